// closing.h - closing the window of a document: unsaved changes are asked about before.
#ifndef PLOTWERK_WINDOW_CLOSING_H
#define PLOTWERK_WINDOW_CLOSING_H

#include "plotwerk/model/document.h"
#include "plotwerk/window/questions.h"

#include <functional>

namespace plotwerk {

class DocumentWindow;
class WindowedApplication;

class Closing {
  public:
    // `save` saves the document, which may ask for a file, and then calls what it is given.
    Closing(WindowedApplication &application, DocumentWindow &window, const Document &document,
            Questions &questions, std::function<void(const std::function<void()> &then)> save);

    // As DocumentWindow::closeAfterAsking.
    void begin(const std::function<void()> &then);

  private:
    void goOn();
    void close(const std::function<void()> &then);
    void ask();

    WindowedApplication &application;
    DocumentWindow &window;
    const Document &document;
    Questions &questions;
    const std::function<void(const std::function<void()> &)> save;
    std::function<void()> whenClosed;
};

} // namespace plotwerk

#endif
