#include "plotwerk/drawing/numberText.h"

#include "util/number/format.h"
#include "util/number/power.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace plotwerk {

// Of an increment: increments are round but for their rounding, which shows from the 16th digit on.
static constexpr int mostDigits = 12;

// The limit of an axis's precision; doubles hold no more in numbers around 1.
static constexpr int mostDecimals = 16;

static RichText plain(std::string text) {
    TextRun run;
    run.text = std::move(text);
    return {run};
}

static void appendSuperscript(RichText &text, const std::string &superscript) {
    TextRun run;
    run.text = superscript;
    run.script = 1;
    text.push_back(std::move(run));
}

// With a minus sign in the width of the digits' plus, and none before a zero.
static std::string fixedText(double value, int decimals) {
    char digits[400];
    std::snprintf(digits, sizeof digits, "%.*f", decimals, std::abs(value));
    const bool zero = std::string_view(digits).find_first_not_of("0.") == std::string_view::npos;
    std::string text = value < 0 && !zero ? "\u2212" : "";
    text += digits;
    return text;
}

static std::string integerText(int value) {
    return fixedText(value, 0);
}

// The decimal places down to the last digit that x needs; negative for 200 (-2).
static int placesOf(double x) {
    int width = 0;
    int precision = 0;
    char exponential = 0;
    plw::FormatOfReal(x, mostDigits, &width, &precision, &exponential);
    return exponential || precision == 0 ? precision - plw::decimalExponent(x) : precision;
}

bool needsPowers(double x) {
    int width = 0;
    int precision = 0;
    char exponential = 0;
    plw::FormatOfReal(x, mostDigits, &width, &precision, &exponential);
    return exponential != 0;
}

// More would have to be counted. Where the numbers differ by less than a thousandth, the first
// three digits or more are the same for all.
static constexpr int mostReadDigits = 7;
static constexpr double leastShared = 1000;

// The tick that is a multiple of the highest power of ten.
static double roundest(const std::vector<double> &ticks) {
    return *std::ranges::min_element(ticks, {}, placesOf);
}

static double largestFrom(double offset, const std::vector<double> &ticks) {
    return ticks.empty()
               ? 0
               : std::max(std::abs(ticks.front() - offset), std::abs(ticks.back() - offset));
}

NumberFormat formatOfNumbers(double increment, const std::vector<double> &ticks, int precision,
                             bool exponents, bool narrow) {
    NumberFormat format;
    const int places = placesOf(increment);
    const auto exponentOf = [](double x) { return x > 0 ? plw::decimalExponent(x) : 0; };
    double largest = largestFrom(0, ticks);
    const double span = std::max(largest > 0 ? ticks.back() - ticks.front() : 0, increment);
    if (exponentOf(largest) + places + 1 > mostReadDigits && largest > leastShared * span) {
        format.offset = roundest(ticks);
        largest = largestFrom(format.offset, ticks);
    }

    const int exponent = exponentOf(largest);
    const int fixedDecimals = std::clamp(places, 0, mostDecimals);
    const int mantissaDecimals = std::clamp(places + exponent, 0, mostDecimals);
    const auto lengthWith = [](int decimals) { return 1 + decimals + (decimals > 0); };
    const bool shorter =
        lengthWith(mantissaDecimals) < lengthWith(fixedDecimals) + std::max(exponent, 0);
    const bool manyZeros = exponent < -1 && fixedDecimals >= mostReadDigits;
    const bool small = narrow && exponent < -2;
    const bool large = narrow && exponent > 3;
    const bool powers = exponents || ((needsPowers(largest) || manyZeros || small || large) &&
                                      (places > mostDecimals || shorter));
    format.exponent = powers ? exponent : 0;
    format.eachPower = exponents;
    format.decimals = std::max(precision, format.exponent != 0 ? mantissaDecimals : fixedDecimals);
    return format;
}

static RichText withPower(const std::string &before, int exponent) {
    RichText text = plain(before + "10");
    appendSuperscript(text, integerText(exponent));
    return text;
}

RichText numberText(double value, const NumberFormat &format) {
    const double difference = value - format.offset;
    if (format.exponent == 0) return plain(fixedText(difference, format.decimals));

    const double mantissa = difference / std::pow(10.0, format.exponent);
    if (!format.eachPower) return plain(fixedText(mantissa, format.decimals));
    if (difference == 0) return plain("0");
    return withPower(fixedText(mantissa, format.decimals) + "\u00d7", format.exponent);
}

// In the shorter one of both notations.
static RichText offsetText(double offset) {
    const int exponent = plw::decimalExponent(offset);
    const int places = std::clamp(placesOf(offset), 0, mostDecimals);
    const int mantissaDecimals = std::max(placesOf(offset) + exponent, 0);
    return logNumberText(offset, mantissaDecimals + 6 < std::max(exponent, 0) + places, -1);
}

RichText commonText(const NumberFormat &format) {
    RichText text;
    if (format.exponent != 0 && !format.eachPower) text = withPower("\u00d7", format.exponent);
    if (format.offset == 0) return text;
    const std::string sign = format.offset < 0 ? "\u2212 " : "+ ";
    RichText offset = offsetText(std::abs(format.offset));
    offset.front().text.insert(0, text.empty() ? sign : " " + sign);
    text.insert(text.end(), offset.begin(), offset.end());
    return text;
}

RichText logNumberText(double value, bool powers, int precision) {
    if (!powers) {
        const int decimals = std::max({precision, placesOf(value), 0});
        return plain(fixedText(value, std::min(decimals, mostDecimals)));
    }
    const int exponent = plw::decimalExponent(value);
    const double mantissa = value / std::pow(10.0, exponent);
    const int decimals = std::clamp(placesOf(mantissa), 0, mostDecimals);
    std::string before = fixedText(mantissa, decimals);
    return withPower(before == "1" ? "" : before + "\u00d7", exponent);
}

} // namespace plotwerk
