// viewHistory.h - the views of a document that the user has had, to go back to.
#ifndef PLOTWERK_WINDOW_VIEWHISTORY_H
#define PLOTWERK_WINDOW_VIEWHISTORY_H

#include "plotwerk/model/document.h"

#include <array>
#include <optional>
#include <vector>

namespace plotwerk {

using View = std::array<Range, axisCount>; // the limits that are set

View viewOf(const Document &document);

class ViewHistory {
  public:
    // The view is about to be left for a new one. When another one has taken its place, what could
    // be gone forward to is forgotten.
    void leave(const View &view);

    // The view before, or after, the present one, which is kept for the way back.
    std::optional<View> back(const View &present);
    std::optional<View> forward(const View &present);

    bool hasEarlier(const View &present);
    bool hasLater(const View &present);

  private:
    void settle(const View &present);

    std::optional<View> left; // it may be the present one still
    std::vector<View> earlier;
    std::vector<View> later;
};

} // namespace plotwerk

#endif
