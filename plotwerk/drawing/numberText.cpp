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

NumberFormat formatOfNumbers(double increment, double largest, int precision, bool exponents) {
    const int places = placesOf(increment);
    const int exponent = largest > 0 ? plw::decimalExponent(largest) : 0;
    const int fixedDecimals = std::clamp(places, 0, mostDecimals);
    const int mantissaDecimals = std::clamp(places + exponent, 0, mostDecimals);

    // "×10" and a small exponent take the room of some four digits
    const int fixedLength = std::max(exponent, 0) + fixedDecimals + (places > 0);
    const int mantissaLength = mantissaDecimals + (mantissaDecimals > 0) + 4;

    NumberFormat format;
    format.powers = exponents || (needsPowers(largest) &&
                                  (places > mostDecimals || mantissaLength <= fixedLength));
    if (exponent == 0) format.powers = false;
    format.exponent = format.powers ? exponent : 0;
    format.decimals = format.powers ? mantissaDecimals : fixedDecimals;
    format.decimals = std::max(precision, format.decimals);
    return format;
}

RichText numberText(double value, const NumberFormat &format) {
    if (!format.powers || value == 0)
        return plain(fixedText(value, format.powers ? 0 : format.decimals));

    const double mantissa = value / std::pow(10.0, format.exponent);
    RichText text = plain(fixedText(mantissa, format.decimals) + "\u00d710");
    appendSuperscript(text, integerText(format.exponent));
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
    RichText text = plain(before == "1" ? "10" : before + "\u00d710");
    appendSuperscript(text, integerText(exponent));
    return text;
}

} // namespace plotwerk
