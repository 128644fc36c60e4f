#include "plotwerk/window/hiddenCurves.h"

#include "plotwerk/model/curves.h"

#include <algorithm>
#include <cstddef>
#include <set>

namespace plotwerk {

static DrawnParts partsOf(const CurveLook &look) {
    return {look.line, look.yError, look.xError, look.filled, look.marker, look.symbols};
}

bool isSeen(const CurveLook &look) {
    return look.visible && partsOf(look) != DrawnParts{};
}

HiddenCurves::Place HiddenCurves::placeOf(const Document &document, const CurveRef &curve) {
    return {document.sources[static_cast<std::size_t>(curve.source)].name, curve.table,
            columnOf(document, curve).name};
}

void HiddenCurves::keepSelected(const Document &document) {
    std::set<Place> met;
    for (const CurveRef &curve : selectedCurves(document)) {
        const CurveLook &look = columnOf(document, curve).look;
        if (!isSeen(look)) continue;
        const Place place = placeOf(document, curve);
        if (met.insert(place).second) kept[place].clear();
        kept[place].push_back(partsOf(look));
    }
}

std::vector<HiddenCurves::Group> HiddenCurves::selected(const Document &document) const {
    std::vector<Group> groups;
    std::map<Place, std::size_t> met;
    for (const CurveRef &curve : selectedCurves(document)) {
        if (partsOf(columnOf(document, curve).look) != DrawnParts{}) continue;
        const Place place = placeOf(document, curve);
        const auto found = kept.find(place);
        DrawnParts parts{.line = true};
        if (found != kept.end()) // of one name, some may have been hidden alone
            parts = found->second[std::min(met[place]++, found->second.size() - 1)];
        const auto isSame = [&](const Group &group) { return group.parts == parts; };
        auto group = std::find_if(groups.begin(), groups.end(), isSame);
        if (group == groups.end()) group = groups.insert(group, {parts, {}});
        group->curves.push_back(curve.index);
    }
    return groups;
}

} // namespace plotwerk
