// palette.h - looks for curves that are new in a document, so that neighbours can be told apart.
#ifndef PLOTWERK_MODEL_PALETTE_H
#define PLOTWERK_MODEL_PALETTE_H

#include "plotwerk/model/document.h"

#include <array>

namespace plotwerk {

// Black first, then colours that stay apart for colour-blind readers (Okabe and Ito 2008) and are
// dark enough for thin lines on white.
inline constexpr std::array<Colour, 7> palette = {{{0, 0, 0, 1},
                                                   {0, 0.447, 0.698, 1},
                                                   {0.835, 0.369, 0, 1},
                                                   {0, 0.620, 0.451, 1},
                                                   {0.8, 0.475, 0.655, 1},
                                                   {0.902, 0.624, 0, 1},
                                                   {0.337, 0.706, 0.914, 1}}};

// Gives line and symbols the colour, and the area a transparent tint of it.
inline void paint(CurveLook &look, const Colour &colour) {
    look.lineColour = look.fillColour = colour;
    look.fillColour.opacity = 0.3;
}

// Lines and symbols of the second seven curves, the third and so on, which have the same colours;
// the first seven have the default ones.
struct RoundOfCurves {
    std::array<double, 4> dashes;
    int symbol;
};
inline constexpr std::array<RoundOfCurves, 4> laterRounds = {
    {{{4, 2, 0, 0}, 2}, {{1, 1.5, 0, 0}, 4}, {{6, 1.5, 1, 1.5}, 6}, {{8, 3, 0, 0}, 8}}};

// The look of a new curve after curvesBefore others: the default, in the next colour of the
// palette. Dashes and symbols distinguish curves of one colour, up to 35 curves; the first curve's
// area keeps its default.
inline CurveLook lookOfNewCurve(int curvesBefore) {
    CurveLook look;
    const std::size_t round = static_cast<std::size_t>(curvesBefore) / palette.size();
    if (round > 0) {
        const RoundOfCurves &later = laterRounds[(round - 1) % laterRounds.size()];
        look.dashed = true;
        look.dashLength = later.dashes;
        look.symbol[0] = later.symbol;
    }
    if (curvesBefore > 0)
        paint(look, palette[static_cast<std::size_t>(curvesBefore) % palette.size()]);
    else
        look.lineColour = palette[0];
    return look;
}

// The same for a curve that is derived from another: it is drawn against that one's axes.
inline CurveLook lookOfNewCurve(int curvesBefore, const CurveLook &origin) {
    CurveLook look = lookOfNewCurve(curvesBefore);
    look.upperX = origin.upperX;
    look.rightY = origin.rightY;
    return look;
}

// Colours of fits, which no other new curve has: crimson, indigo, brown, dark green.
inline constexpr std::array<Colour, 4> fitPalette = {
    {{0.78, 0.04, 0.2, 1}, {0.33, 0.2, 0.62, 1}, {0.47, 0.28, 0.1, 1}, {0, 0.36, 0.2, 1}}};

// The look of a fit of that curve in a document that has kept fitsBefore fits.
inline CurveLook lookOfNewFit(int fitsBefore, const CurveLook &origin) {
    CurveLook look = lookOfNewCurve(0, origin);
    paint(look, fitPalette[static_cast<std::size_t>(fitsBefore) % fitPalette.size()]);
    return look;
}

} // namespace plotwerk

#endif
