// desktop.h - what the application tells and asks the desktop that it runs on. Without one, nobody
// is told and nothing is there.
#ifndef PLOTWERK_APPLICATION_DESKTOP_H
#define PLOTWERK_APPLICATION_DESKTOP_H

#include "plotwerk/model/document.h"

#include <optional>
#include <string>

namespace plotwerk {

class Desktop {
  public:
    virtual ~Desktop() = default;

    // A document was taken in, is about to go, came to the front (it may have been there already).
    virtual void opened(Document &document) = 0;
    virtual void closing(const Document &document) = 0;
    virtual void activated(const Document &document) = 0;

    // A document with unsaved changes is to be closed. True: the user will be asked, and the
    // document stays open until he has answered.
    virtual bool asksToSave(const Document &document) = 0;

    // Data text, or the document's picture, is to be the content of the clipboard.
    virtual void copyText(const std::string &text) = 0;
    virtual void copyPicture(const Document &document) = 0;

    // The text that another program has put on the clipboard; nothing while it holds what this one
    // has copied.
    virtual std::optional<std::string> foreignText() = 0;
};

} // namespace plotwerk

#endif
