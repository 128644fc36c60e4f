#include "plotwerk/window/messageLine.h"

#include "plotwerk/drawing/richText.h"
#include "protocol/PlotwerkControlNames.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace plotwerk {

namespace {

// A word for each argument of the message, what callPlw makes it of:
//   d    the document
//   a    option -a; a text, a number, yes or no
//   a?   a flag: 0 no, 1 yes, 2 left as it is
//   a*   plain text that callPlw writes as RTF
//   .    nothing, callPlw can't say it
//   |    yes or no: that chooses between two commands
enum class Effect { anything, keepsData, setsRange };

struct Row {
    std::string_view member;
    std::string_view command;
    std::string_view arguments;
    Effect effect = Effect::anything;
};

} // namespace

static constexpr Row rows[] = {
    {"printDoc_", "print", "d"},
    {"saveDocument_to_binary_", "saveDocument -k yes", "d f b"},
    {"saveDocument_as_binary_", "saveDocument", "d f b"},
    {"display_doRangeOverAll_", "display", "d r", Effect::keepsData},
    {"setValueOfDoc_atIndex_indexSerie_toValue_", "setYi", "d i s a"},
    {"selectCurvesOf_sourceName_table_column_appendSelection_", "selectCurve", "d s t c a",
     Effect::keepsData},
    {"selectCurvesOf_sourceIndexFirst_sourceIndexLast_tableFirst_tableLast_columnFirst_columnLast_"
     "appendSelection_",
     "selectCurveByPosition", "d s e t u c f a", Effect::keepsData},
    {"selectCurvesOf_indexFirst_indexLast_appendSelection_", "selectCurveByIndex", "d i j a",
     Effect::keepsData},
    {"markSelectedCurvesOf_", "markSelectedCurves", "d", Effect::keepsData},
    {"markSelectionAsFitDataOf_", "markSelectionAsFitData", "d", Effect::keepsData},
    {"searchMaximaOfSelectionOf_searchMaxima_searchMinima_minwidth_minheight_", "searchMaxima",
     "d g s w h"},
    {"createCurveAtSelectionOf_minx_maxx_incx_miny_incy_", "createCurveAtSelection", "d s e i y j"},
    {"changeNameOfSelectionOf_to_", "changeNameOfSelection", "d t", Effect::keepsData},
    {"modifyDataOf_Ydata_", "modifyX|modifyY", "d |"},
    {"showCurveOf_", "show", "d", Effect::keepsData},
    {"diffOf_", "diff", "d"},
    {"deleteSelectedCurvesOf_", "delete", "d"},
    {"sortSelectedCurvesByXdata_", "sortByX", "d"},
    {"sortSelectedCurvesBySelection_ascending_", "sortBySelection", "d r"},
    {"swapSelectedCurvesWithXdata_", "swapWithX", "d"},
    {"setAttributesOfSelectionOf_line_stepped_yerr_xerr_dash_fill_topX_rightY_marker_sym_",
     "setAttributes", "d l? s? y? e? a? f? t? r? m? S?", Effect::keepsData},
    {"setAttributes2OfSelectionOf_", "setAttributes2",
     "d s p t y c m n . . w h i j k r g b o R G B .", Effect::keepsData},
    {"setDocAttributes_xAxisLength_yAxisLength_tickLength_axisThickness_yAxisPos_xAxisPos_"
     "multiDimFit_noLineOnRev_",
     "setDocAttributes", "d w h t a e y m? r?", Effect::keepsData},
    {"setAxisOf_axisCode_inc_ticks_prec_log_insideticks_outsideticks_majorgrid_minorgrid_"
     "expnumbers_labelAngle_noline_numbersinside_nonumbers_arrow_logticksAt_lognumberAt_reverse_"
     "labelDensity_",
     "setAxis", "d a i t . l? u? w? m? n? e? r o? . k? . b c s? g", Effect::keepsData},
    {"setRTFTextOf_to_at_X_at_Y_angle_xFloating_yFloating_", "placeText", "d t* r u a f g",
     Effect::keepsData},
    {"setXRangeOf_xmin_xmax_", "setXRange", "d s e", Effect::setsRange},
    {"setYRangeOf_ymin_ymax_", "setYRange", "d s e", Effect::setsRange},
    {"setFitRangeOf_xmin_xmax_", "setFitRange", "d s e", Effect::setsRange},
    {"startFitOf_iterations_lambda_chiq_", "fit", "d"},
    {"setFormulaOf_formulaText_", "setFormula", "d f", Effect::keepsData},
    {"readFormulaParameterOf_parameterList_", "setFormulaParameters", "d p", Effect::keepsData},
    {"setDeciSeparator_", "setDecimalSeparator", "s", Effect::keepsData},
    {"replaceDataformText_of_source_doRangeOverAll_", "replaceData", "p d s r"},
    {"readDataformText_of_source_doRangeOverAll_appendToExistingData_", "readData", "p d s r a"},
    {"appendDataAndDrawInFastMode_of_source_", "readData -a yes", "p d s"},
    {"copySelectedCurvesOf_includeX_", "copy", "d i"},
    {"pasteDataOf_", "pasteData", "d"},
    {"duplicateAsPlottedOf_", "duplicateAsPlotted", "d"},
    {"copyPDF_", "copyPDF", "d"},
    {"copyTIFF_", "copyTIFF", "d"},
    {"savePicturePDF_as_", "savePDF", "d f"},
    {"savePictureEPS_as_", "saveEPS", "d f"},
    {"savePictureTIFF_as_", "saveTIFF", "d f"},
};

// Those without a command that change a document all the same; the first argument of each is it.
static constexpr Row withoutCommand[] = {
    {"selectCurvesOf_regexSourceName_table_regexColumn_appendSelection_", "", "",
     Effect::keepsData},
    {"setXTitleOf_to_", "", "", Effect::keepsData},
    {"setYTitleOf_to_", "", "", Effect::keepsData},
    {"setRTFxTitleOf_to_", "", "", Effect::keepsData},
    {"setRTFyTitleOf_to_", "", "", Effect::keepsData},
    {"set2XRangeOf_xmin_xmax_", "", "", Effect::setsRange},
    {"set2YRangeOf_ymin_ymax_", "", "", Effect::setsRange},
    {"setLocalRangeOf_XorYAxis_", "", "", Effect::keepsData},
};

// A word of a shell's command line.
static std::string shellWord(std::string_view word) {
    constexpr std::string_view plain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
        "_-+./:,=@%^";
    if (!word.empty() && word.find_first_not_of(plain) == std::string_view::npos)
        return std::string(word);
    std::string text = "'";
    for (const char c : word) {
        if (c == '\'')
            text += "'\\''";
        else
            text += c;
    }
    return text + '\'';
}

static std::string wordOf(const std::string &text) {
    return shellWord(text);
}
static std::string wordOf(std::int32_t number) {
    return std::to_string(number);
}
static std::string wordOf(double number) {
    char text[40];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
}
static std::string wordOf(bool yes) {
    return yes ? "yes" : "no";
}

// Whether callPlw sends the same without the option.
static bool isDefault(const std::string &text) {
    return text.empty();
}
static bool isDefault(std::int32_t number) {
    return number == -1;
}
static bool isDefault(double number) {
    return std::isnan(number);
}
static bool isDefault(bool yes) {
    return !yes;
}

static std::string option(char letter, const std::string &word) {
    return std::string(" -") + letter + ' ' + word;
}

// What callPlw gets for an argument of that kind; nothing for one that it leaves out.
static std::string optionOf(std::string_view kind, const Argument &argument) {
    if (kind == "." || kind == "d" || kind == "|") return "";
    const char letter = kind.front();
    if (kind.ends_with('?')) {
        const auto flag = std::get<std::int32_t>(argument);
        return flag == 2 ? "" : option(letter, flag == 0 ? "no" : "yes");
    }
    if (kind.ends_with('*'))
        return option(letter, shellWord(plainTextOf(richTextOf(std::get<std::string>(argument)))));
    return std::visit(
        [&](const auto &value) {
            return isDefault(value) ? std::string() : option(letter, wordOf(value));
        },
        argument);
}

static std::string nextWord(std::string_view &words) {
    const std::size_t end = std::min(words.find(' '), words.size());
    const std::string word(words.substr(0, end));
    words.remove_prefix(std::min(end + 1, words.size()));
    return word;
}

static MessageLine lineOfCommand(const Row &row, const RecordedMessage &message) {
    MessageLine line;
    std::string options;
    std::string command(row.command);
    std::string_view kinds = row.arguments;
    for (const Argument &argument : message.arguments) {
        const std::string kind = nextWord(kinds);
        if (kind == "d") line.document = std::get<std::string>(argument);
        if (kind == "|") {
            const std::size_t bar = command.find('|');
            command = std::get<bool>(argument) ? command.substr(bar + 1) : command.substr(0, bar);
        }
        options += optionOf(kind, argument);
    }
    line.text = "callPlw -x " + command + options;
    return line;
}

static std::string signatureOf(const RecordedMessage &message) {
    std::string types;
    for (const Argument &argument : message.arguments) types += "sidb"[argument.index()];
    return types;
}

static MessageLine lineOfBusctl(const RecordedMessage &message) {
    MessageLine line;
    line.document = std::get<std::string>(message.arguments.front());
    line.text = "busctl --user call";
    const std::string signature = signatureOf(message);
    for (const std::string_view word :
         {std::string_view(plotwerkControl::busName), std::string_view(plotwerkControl::objectPath),
          std::string_view(plotwerkControl::busName), std::string_view(message.member),
          std::string_view(signature)}) {
        line.text += ' ';
        line.text += word;
    }
    for (const Argument &argument : message.arguments)
        line.text += ' ' + std::visit([](const auto &value) { return wordOf(value); }, argument);
    return line;
}

// Both limits given: whatever the range was before.
static bool setsAll(const RecordedMessage &message) {
    const double min = std::get<double>(message.arguments.at(1));
    const double max = std::get<double>(message.arguments.at(2));
    return std::isnan(min) == std::isnan(max);
}

std::optional<MessageLine> messageLine(const RecordedMessage &message) {
    const auto find = [&](const auto &table, auto lineOf) -> std::optional<MessageLine> {
        for (const Row &row : table) {
            if (row.member != message.member) continue;
            MessageLine line = lineOf(row);
            if (row.effect == Effect::setsRange && setsAll(message)) line.setting = message.member;
            line.keepsData = row.effect != Effect::anything;
            line.selects = message.member.starts_with("selectCurvesOf_");
            return line;
        }
        return std::nullopt;
    };
    if (auto line = find(rows, [&](const Row &row) { return lineOfCommand(row, message); }))
        return line;
    return find(withoutCommand, [&](const Row &) { return lineOfBusctl(message); });
}

} // namespace plotwerk
