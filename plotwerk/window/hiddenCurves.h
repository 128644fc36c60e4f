// hiddenCurves.h - what was drawn of curves before the user hid them.
//
// Messages hide a curve by drawing none of its parts, and show it again by drawing some.
#ifndef PLOTWERK_WINDOW_HIDDENCURVES_H
#define PLOTWERK_WINDOW_HIDDENCURVES_H

#include "plotwerk/model/document.h"

#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace plotwerk {

struct DrawnParts {
    bool line = false;
    bool yError = false;
    bool xError = false;
    bool filled = false;
    bool marker = false;
    bool symbols = false;

    bool operator==(const DrawnParts &) const = default;
};

// Whether a curve of that look can be seen.
bool isSeen(const CurveLook &look);

class HiddenCurves {
  public:
    // The selected curves are about to be hidden.
    void keepSelected(const Document &document);

    // Curves, by their indexes, of which the same was drawn.
    struct Group {
        DrawnParts parts;
        std::vector<int> curves;
    };

    // The selected curves of which nothing is drawn, and what was drawn before: the line, where the
    // user hasn't hidden them.
    std::vector<Group> selected(const Document &document) const;

  private:
    // Indexes may change meanwhile: the names of source and column, and the table.
    using Place = std::tuple<std::string, int, std::string>;
    static Place placeOf(const Document &document, const CurveRef &curve);

    std::map<Place, std::vector<DrawnParts>> kept; // curves of one name in the order of selection
};

} // namespace plotwerk

#endif
