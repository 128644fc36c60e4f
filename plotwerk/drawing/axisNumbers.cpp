#include "plotwerk/drawing/axisNumbers.h"

#include "plotwerk/drawing/timeTicks.h"

#include <algorithm>
#include <cmath>

namespace plotwerk {

// From number to number, in points: at least 5 on the default width of 12 cm, and on its 8 cm above
// each other; a line and a half of type is close there, and a line and a fifth the closest, so that
// 3 cm have room for 5.
static constexpr NumberSpacing horizontalSpacing{16, 24, 70};
static constexpr NumberSpacing verticalSpacing{13, 16, 50};
static constexpr double fewestNumbers = 2; // however low the density is

// Between two numbers, in points: beside each other nearly two digits, so that they don't read as
// one number; above each other half a line.
static constexpr double horizontalGap = 10;
static constexpr double verticalGap = 4;

// Texts less than 10 degrees from level or upright are placed like those: sin 10 is 0.17.
static constexpr double leastSlant = 0.17;

static double radians(double degrees) {
    return degrees * G_PI / 180;
}

Box PlacedNumber::bounds() const {
    const double c = std::abs(std::cos(radians(angle)));
    const double s = std::abs(std::sin(radians(angle)));
    const double halfWidth = (width * c + height * s) / 2;
    const double halfHeight = (width * s + height * c) / 2;
    return {middle.x - halfWidth, middle.y - halfHeight, middle.x + halfWidth,
            middle.y + halfHeight};
}

void PlacedNumber::draw(cairo_t *cr) const {
    // all numbers of an axis stand on one base line, whatever their own ink
    text.draw(cr, middle, angle, {text.middleOfInk().x, -height / 2});
}

bool numbersMeet(const PlacedNumber &a, const PlacedNumber &b, double gap) {
    // in the coordinates of the turned boxes both are upright
    const double c = std::cos(radians(a.angle));
    const double s = std::sin(radians(a.angle));
    const double dx = b.middle.x - a.middle.x;
    const double dy = b.middle.y - a.middle.y;
    const double along = std::abs(dx * c - dy * s);
    const double across = std::abs(dx * s + dy * c);
    return along < (a.width + b.width) / 2 + gap && across < (a.height + b.height) / 2 + gap;
}

// Where the middle of a box of that size goes for a tick at the origin.
static Point middleBeside(Side side, double width, double height, double angle, double distance) {
    const double c = std::cos(radians(angle));
    const double s = std::sin(radians(angle));
    const bool slanted = std::abs(c) > leastSlant && std::abs(s) > leastSlant;
    const double halfWidth = (width * std::abs(c) + height * std::abs(s)) / 2;
    const double halfHeight = (width * std::abs(s) + height * std::abs(c)) / 2;

    // from the end of the text that is nearest to the tick
    const double towards = side == Side::below || side == Side::leftOf ? -1 : 1;
    const double alongX =
        slanted ? towards * std::copysign(1.0, s * c) * std::abs(c) * width / 2 : 0;
    const double alongY = slanted ? -towards * std::copysign(1.0, c) * s * width / 2 : 0;
    switch (side) {
    case Side::below: return {alongX, distance + halfHeight};
    case Side::above: return {alongX, -distance - halfHeight};
    case Side::leftOf: return {-distance - halfWidth, alongY};
    case Side::rightOf: return {distance + halfWidth, alongY};
    }
    return {};
}

std::vector<PlacedNumber> placedNumbers(const std::vector<AxisNumber> &numbers, const Scale &scale,
                                        Side side, double angle, double distance,
                                        const Typesetter &typesetter) {
    std::vector<PlacedNumber> placed;
    const double digitHeight = -typesetter.line(richTextOf("0"), numberSize).ink().top;
    double height = digitHeight; // the same for all, for a common base line
    for (const AxisNumber &number : numbers) {
        SetText text = typesetter.line(number.text, numberSize);
        height = std::max(height, -text.ink().top);
        placed.push_back({number.value, std::move(text), {}, 0, 0, angle});
    }
    for (PlacedNumber &number : placed) {
        number.width = number.text.ink().width();
        number.height = height;
        number.middle = middleBeside(side, number.width, height, angle, distance);
        const double position = scale.position(number.value);
        if (isHorizontal(side)) {
            number.middle.x += position;
        } else {
            number.middle.y -= position;
            if (angle == 0) number.middle.y -= (height - digitHeight) / 2;
        }
    }
    return placed;
}

bool standApart(const std::vector<PlacedNumber> &numbers, Side side) {
    const double gap = isHorizontal(side) ? horizontalGap : verticalGap;
    for (std::size_t i = 1; i < numbers.size(); ++i) {
        if (numbersMeet(numbers[i - 1], numbers[i], gap)) return false;
        if (i > 1 && numbersMeet(numbers[i - 2], numbers[i], gap)) return false;
    }
    return true;
}

AxisMarks marksBeside(const Axis &axis, const Scale &scale, bool isTime, Side side,
                      const Typesetter &typesetter) {
    const auto fit = [&](const std::vector<AxisNumber> &numbers) {
        return standApart(placedNumbers(numbers, scale, side, axis.labelAngle, 0, typesetter),
                          side);
    };
    const NumberSpacing &usual = isHorizontal(side) ? horizontalSpacing : verticalSpacing;
    const double density = axis.labelDensity;
    const NumberSpacing spacing{usual.closest / density, usual.close / density,
                                usual.widest / density,
                                std::max(fewestNumbers, usual.fewest * std::min(density, 1.0))};
    if (isTime && isTimeScale(scale)) return timeMarksOf(axis, scale, spacing, fit);
    return marksOf(axis, scale, spacing, fit);
}

PlacedNumber commonNumber(const RichText &common, const Typesetter &typesetter) {
    SetText text = typesetter.line(common, numberSize);
    const Box ink = text.ink();
    return {0, std::move(text), {}, ink.width(), -ink.top, 0};
}

} // namespace plotwerk
