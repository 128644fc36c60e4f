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

// The look of every curve that is made: the standard one in the palette's next colour, for a
// document that has so many curves already. The area below the curve is a light tint of that
// colour.
inline CurveLook lookOfNewCurve(int curvesBefore) {
    CurveLook look;
    const auto index = static_cast<size_t>(curvesBefore < 0 ? 0 : curvesBefore) % palette.size();
    look.lineColour = palette[index];
    if (curvesBefore > 0) {
        look.fillColour = palette[index];
        look.fillColour.opacity = 0.3;
    }
    return look;
}

// As that, for a curve made from another one: drawn against the same axes.
inline CurveLook lookOfNewCurve(int curvesBefore, const CurveLook &origin) {
    CurveLook look = lookOfNewCurve(curvesBefore);
    look.upperX = origin.upperX;
    look.rightY = origin.rightY;
    return look;
}

} // namespace plotwerk

#endif
