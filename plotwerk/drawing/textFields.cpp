#include "plotwerk/drawing/textFields.h"

#include "plotwerk/drawing/curveSample.h"
#include "plotwerk/drawing/markup.h"
#include "plotwerk/model/parameterText.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <map>
#include <string>

namespace plotwerk {

// A text may have any number of fields: beyond this size they stay empty.
static constexpr std::size_t longestFilled = 16384;

static RichText plain(std::string text) {
    TextRun run;
    run.text = std::move(text);
    return {run};
}

static void append(RichText &text, RichText more) {
    std::ranges::move(more, std::back_inserter(text));
}

// A number as computers write it, or a text of numbers, as print has it: -1.5e-07 with a minus sign
// and a power of ten.
static RichText printedNumbers(std::string_view text) {
    RichText printed = plain("");
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != 'e') {
            printed.back().text += text[i] == '-' ? "\u2212" : std::string(1, text[i]);
            continue;
        }
        const char *begin = text.data() + i + 1;
        if (*begin == '+') ++begin; // which from_chars doesn't read
        int power = 0;
        const char *end = std::from_chars(begin, text.data() + text.size(), power).ptr;
        printed.back().text += "\u00d710";
        TextRun raised;
        raised.text = (power < 0 ? "\u2212" : "") + std::to_string(std::abs(power));
        raised.script = 1;
        printed.push_back(std::move(raised));
        append(printed, plain(""));
        i = static_cast<std::size_t>(end - text.data()) - 1;
    }
    std::erase_if(printed, [](const TextRun &run) { return run.text.empty(); });
    return printed;
}

// What no error tells the digits of is rounded; what is fixed is what somebody has written.
static double shownValue(const FitParameter &parameter) {
    constexpr int digits = 6;
    if (parameter.fixed || parameter.error > 0) return parameter.value;
    char text[40];
    const auto [end, error] = std::to_chars(text, text + sizeof text, parameter.value,
                                            std::chars_format::general, digits);
    double rounded = parameter.value;
    std::from_chars(text, end, rounded);
    return rounded;
}

static RichText parametersText(const std::vector<FitParameter> &parameters) {
    RichText text;
    for (const FitParameter &parameter : parameters) {
        if (!text.empty()) text.back().text += '\n';
        append(text, nameText(parameter.name));
        append(text, plain(" = "));
        const std::string_view named = "p = ";
        std::string value = parameterList(
            {FitParameter{.name = "p", .value = shownValue(parameter), .error = parameter.error}},
            '.');
        value.erase(0, named.size());
        const std::string_view sign = " +- ";
        const std::size_t at = value.find(sign);
        append(text, printedNumbers(value.substr(0, at)));
        if (at == std::string::npos) continue;
        append(text, plain(" \u00b1 "));
        append(text, printedNumbers(value.substr(at + sign.size())));
    }
    return text;
}

static RichText chiText(const Document &document) {
    const auto fitted = std::ranges::count(document.parameters, false, &FitParameter::fixed);
    const auto freedom = document.fit.points - fitted;
    if (!document.fit.done || freedom <= 0) return {};
    char value[40];
    std::snprintf(value, sizeof value, "%#.3g",
                  document.fit.chiSquare / static_cast<double>(freedom));
    std::string_view digits = value;
    if (digits.ends_with('.')) digits.remove_suffix(1);
    RichText text = readMarkup(plain("\\chi^2/ndf = "));
    append(text, printedNumbers(digits));
    return text;
}

// Of the time that is given for builds that can be repeated, if it is; else local time.
static std::string today() {
    std::time_t now = std::time(nullptr);
    std::tm date{};
    const char *given = std::getenv("SOURCE_DATE_EPOCH");
    long long seconds = 0;
    const std::string_view digits = given == nullptr ? "" : given;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), seconds);
    if (error == std::errc() && end == digits.data() + digits.size()) {
        now = static_cast<std::time_t>(seconds);
        gmtime_r(&now, &date);
    } else {
        localtime_r(&now, &date);
    }
    char text[40];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d", &date)};
}

static RichText legendText(const std::vector<DrawnCurve> &curves, std::size_t lines) {
    std::vector<const DrawnCurve *> listed;
    std::map<std::string_view, int> namesakes;
    for (const DrawnCurve &curve : curves) {
        if (!showsAnything(curve.column->look)) continue;
        listed.push_back(&curve);
        ++namesakes[curve.column->name];
    }
    std::ranges::sort(listed, {}, &DrawnCurve::index);
    const std::size_t shown = listed.size() <= lines ? listed.size() : lines - 1;

    double width = 0;
    for (std::size_t i = 0; i < shown; ++i)
        width = std::max(width, sampleWidthOf(listed[i]->column->look));
    RichText text;
    for (std::size_t i = 0; i < shown; ++i) {
        const Column &column = *listed[i]->column;
        if (!text.empty()) text.back().text += '\n';
        TextRun sample;
        sample.text = "\ufffc"; // a character that stands for an object
        sample.sample = &column.look;
        sample.width = width;
        text.push_back(std::move(sample));
        append(text, plain("\u2002"));
        append(text, nameText(column.name));
        if (namesakes[column.name] < 2) continue;
        const std::string &source = listed[i]->source->name;
        append(text, plain(column.name.empty() ? source : " (" + source + ")"));
    }
    if (shown < listed.size()) append(text, plain(shown > 0 ? "\n\u2026" : "\u2026"));
    return text;
}

RichText nameText(std::string_view name) {
    return readMarkup(richTextOf(name));
}

RichText filledText(std::string_view text, const Document &document,
                    const std::vector<DrawnCurve> &curves, std::size_t legendLines) {
    std::size_t size = 0;
    const auto fieldText = [&](std::string_view field) -> std::optional<RichText> {
        if (size > longestFilled) return RichText{};
        RichText filled;
        if (field == "legend")
            filled = legendText(curves, std::max<std::size_t>(legendLines, 1));
        else if (field == "formula")
            filled = richTextOf(document.formula);
        else if (field == "parameters")
            filled = parametersText(document.parameters);
        else if (field == "chi")
            filled = chiText(document);
        else if (field == "name")
            filled = richTextOf(document.name);
        else if (field == "date")
            filled = plain(today());
        else
            return std::nullopt;
        size += plainTextOf(filled).size();
        return filled;
    };
    return readMarkup(richTextOf(text), fieldText);
}

bool hasLegend(const RichText &filled) {
    return std::ranges::any_of(filled, [](const TextRun &run) { return run.sample != nullptr; });
}

bool isLegendAlone(std::string_view text) {
    std::string plain = plainTextOf(richTextOf(text));
    std::erase_if(plain, [](char c) { return c == ' ' || c == '\n' || c == '\t'; });
    return plain == "<legend>";
}

} // namespace plotwerk
