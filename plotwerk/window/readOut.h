// readOut.h - what lies under the mouse, as text.
#ifndef PLOTWERK_WINDOW_READOUT_H
#define PLOTWERK_WINDOW_READOUT_H

#include "plotwerk/drawing/hitTest.h"
#include "plotwerk/window/pageView.h"

#include <optional>
#include <string>

namespace plotwerk {

struct ReadOut {
    std::string place; // the values of the axes there
    std::string point; // the nearest point: its curve, index and values; empty without one

    // Both, for the clipboard: the values behind tabs.
    std::string text() const;
};

// Of a place on paper. Values have as many digits as tell it from the next pixel; those of the
// point have all.
ReadOut readOutAt(const Document &document, const PageView &view, const Point &place,
                  const std::optional<NearestPoint> &nearest);

} // namespace plotwerk

#endif
