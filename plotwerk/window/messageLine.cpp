#include "plotwerk/window/messageLine.h"

#include "plotwerk/drawing/richText.h"
#include "protocol/PlotwerkControlNames.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <iterator>
#include <string_view>
#include <utility>

namespace plotwerk {

namespace {

// A word for each argument of the message, what callPlw makes it of:
//   d    the document
//   a    option -a; a text, a number, yes or no
//   a=   a number that is another one without the option
//   a?   a flag: 0 no, 1 yes, 2 left as it is
//   a!   a flag that callPlw always sets: 0 no, 1 yes
//   a*   plain text that callPlw writes as RTF
//   .    a setting that callPlw leaves as it is; .? a flag
//   |    yes or no: that chooses between two commands
enum class Effect { anything, keepsData, setsRange };

struct Row {
    std::string_view member;
    std::string_view command;
    std::string_view arguments;
    Effect effect = Effect::anything;
};

} // namespace

static constexpr const char *openingMember = "openFile_file_doRangeOverAll_";

static constexpr Row rows[] = {
    {openingMember, "open", "d f r"},
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
     "setDocAttributes", "d w h t a e y m! r!", Effect::keepsData},
    {"setAxisOf_axisCode_inc_ticks_prec_log_insideticks_outsideticks_majorgrid_minorgrid_"
     "expnumbers_labelAngle_noline_numbersinside_nonumbers_arrow_logticksAt_lognumberAt_reverse_"
     "labelDensity_",
     "setAxis", "d a= i t . l? u? w? m? n? e? r o? .? k? .? b c s? g", Effect::keepsData},
    {"setRTFTextOf_to_at_X_at_Y_angle_xFloating_yFloating_", "placeText", "d t* r= u= a= f! g!",
     Effect::keepsData},
    {"setXRangeOf_xmin_xmax_", "setXRange", "d s e", Effect::setsRange},
    {"setYRangeOf_ymin_ymax_", "setYRange", "d s e", Effect::setsRange},
    {"setFitRangeOf_xmin_xmax_", "setFitRange", "d s e", Effect::setsRange},
    {"startFitOf_iterations_lambda_chiq_", "fit", "d"},
    {"setFormulaOf_formulaText_", "setFormula", "d f", Effect::keepsData},
    {"readFormulaParameterOf_parameterList_", "setFormulaParameters", "d p", Effect::keepsData},
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
    // There are no commands for these.
    {"selectCurvesOf_regexSourceName_table_regexColumn_appendSelection_", "", "",
     Effect::keepsData},
    {"deleteAllCurvesOf_", "", ""},
    {"setXTitleOf_to_", "", "", Effect::keepsData},
    {"setYTitleOf_to_", "", "", Effect::keepsData},
    {"setRTFxTitleOf_to_", "", "", Effect::keepsData},
    {"setRTFyTitleOf_to_", "", "", Effect::keepsData},
    {"set2XRangeOf_xmin_xmax_", "", "", Effect::setsRange},
    {"set2YRangeOf_ymin_ymax_", "", "", Effect::setsRange},
    {"setLocalRangeOf_XorYAxis_", "", "", Effect::keepsData},
};

// These do nothing to a document's contents, and have no line.
static constexpr std::string_view withoutLine[] = {
    "waitForEmptyReply",
    "actify_",
    "closeDocument_askForSave_",
    "newDocumentWithName_",
    "newCompositionView_",
    "addPDFtoCompositionView_inRect_angle_sheer_",
    "savePDFofCompositionView_openWith_",
    "setDeciSeparator_",
};

static constexpr bool hasRow(std::string_view member) {
    return std::ranges::find(rows, member, &Row::member) != std::end(rows);
}

static constexpr bool isOrder(std::string_view member) {
    return std::ranges::find(withoutLine, member) == std::end(withoutLine);
}

static_assert(std::ranges::all_of(plotwerkControl::messageNames, [](const auto &name) {
    return name.answers || hasRow(name.member) == isOrder(name.member);
}));
static_assert(std::ranges::all_of(rows, [](const Row &row) {
    return !plotwerkControl::selectorOf(row.member).empty();
}));

static constexpr const char *appendingMember = "appendDataAndDrawInFastMode_of_source_";

static const Row *rowOf(std::string_view member) {
    const auto isIt = [&](const Row &row) { return row.member == member; };
    const auto *row = std::find_if(std::begin(rows), std::end(rows), isIt);
    return row == std::end(rows) ? nullptr : row;
}

// The most bytes of an option's text that callPlw reads.
static constexpr std::size_t longestWord = 1023;
static constexpr std::size_t longestText = 65535; // of -f and -p

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

static bool isPlain(const RichText &text) {
    return std::all_of(text.begin(), text.end(), [](const TextRun &run) {
        const bool decorated = run.bold || run.italic || run.underline || run.colour;
        return !decorated && run.script == 0 && run.rise == 0 && std::isnan(run.size) &&
               std::isnan(run.width) && !run.sample;
    });
}

// The option for a text, as long as callPlw takes it.
static std::optional<std::string> optionOfText(char letter, const std::string &text) {
    const std::size_t longest = letter == 'f' || letter == 'p' ? longestText : longestWord;
    if (text.size() > longest) return std::nullopt;
    return text.empty() ? std::string() : option(letter, shellWord(text));
}

static std::optional<std::string> optionOfRichText(char letter, const std::string &text) {
    const RichText rich = richTextOf(text);
    if (!text.starts_with("{\\rtf") || !isPlain(rich)) return std::nullopt;
    return optionOfText(letter, plainTextOf(rich));
}

// By a word for each value from 0 on; empty where it takes no option, null where none says it.
static std::optional<std::string> optionOfFlag(char letter, const Argument &argument,
                                               std::initializer_list<const char *> words) {
    const double flag = std::holds_alternative<double>(argument) ? std::get<double>(argument)
                                                                 : std::get<std::int32_t>(argument);
    double value = 0;
    for (const char *word : words)
        if (flag == value++ && word) return *word ? option(letter, word) : std::string();
    return std::nullopt;
}

// What callPlw gets for an argument of that kind: empty for one that it leaves out, nothing for one
// that it can't say.
static std::optional<std::string> optionOf(std::string_view kind, const Argument &argument) {
    const char letter = kind.front();
    if (kind == "d" || kind == "|") return "";
    if (kind == ".?") return optionOfFlag(letter, argument, {nullptr, nullptr, ""});
    if (kind.ends_with('?')) return optionOfFlag(letter, argument, {"no", "yes", ""});
    if (kind.ends_with('!')) return optionOfFlag(letter, argument, {"", "yes"});
    if (kind.ends_with('*')) return optionOfRichText(letter, std::get<std::string>(argument));
    if (const auto *text = std::get_if<std::string>(&argument)) return optionOfText(letter, *text);
    const auto [word, left] = std::visit(
        [](const auto &value) { return std::pair(wordOf(value), isDefault(value)); }, argument);
    if (kind == ".") return left ? std::optional<std::string>("") : std::nullopt;
    return left && !kind.ends_with('=') ? std::string() : option(letter, word);
}

static std::string nextWord(std::string_view &words) {
    const std::size_t end = std::min(words.find(' '), words.size());
    const std::string word(words.substr(0, end));
    words.remove_prefix(std::min(end + 1, words.size()));
    return word;
}

// Nothing where the command can't say what the message does.
static std::optional<std::string> callPlwLine(const Row &row, const RecordedMessage &message) {
    std::string options;
    std::string command(row.command);
    std::string_view kinds = row.arguments;
    for (const Argument &argument : message.arguments) {
        const std::string kind = nextWord(kinds);
        if (kind == "|") {
            const std::size_t bar = command.find('|');
            command = std::get<bool>(argument) ? command.substr(bar + 1) : command.substr(0, bar);
        }
        const auto option = optionOf(kind, argument);
        if (!option) return std::nullopt;
        options += *option;
    }
    return "callPlw -x " + command + options;
}

static std::string busctlLine(const RecordedMessage &message, std::size_t documentArgument) {
    std::string line = "busctl --user call --"; // what follows may begin with a minus
    for (const char *word : {plotwerkControl::busName, plotwerkControl::objectPath,
                             plotwerkControl::busName, message.member.c_str()}) {
        line += ' ';
        line += word;
    }
    line += ' ';
    for (const Argument &argument : message.arguments) line += "sidb"[argument.index()];
    for (std::size_t i = 0; i < message.arguments.size(); ++i) {
        line += ' ';
        line += i == documentArgument ? "\"$(callPlw -x activeDoc)\""
                                      : std::visit([](const auto &value) { return wordOf(value); },
                                                   message.arguments[i]);
    }
    return line;
}

// A data text that is too long for a line, in several: its first rows as the message says, the
// others appended to them. Nothing if one of its rows is too long.
static std::optional<std::string> linesOfLongText(const Row &row, RecordedMessage message) {
    const std::string text = std::get<std::string>(message.arguments[0]);
    std::string lines;
    for (std::size_t begin = 0, end = 0; begin < text.size(); begin = end) {
        end = text.size() - begin <= longestText ? text.size()
                                                 : text.rfind('\n', begin + longestText - 1) + 1;
        if (end <= begin) return std::nullopt;
        message.arguments[0] = text.substr(begin, end - begin);
        const auto line = callPlwLine(begin == 0 ? row : *rowOf(appendingMember), message);
        if (!line) return std::nullopt;
        lines += (begin == 0 ? "" : "\n") + *line;
        message = {.member = appendingMember,
                   .arguments = {"", message.arguments[1], message.arguments[2]}};
    }
    return lines;
}

// Both limits given: whatever the range was before.
static bool setsAll(const RecordedMessage &message) {
    const double min = std::get<double>(message.arguments.at(1));
    const double max = std::get<double>(message.arguments.at(2));
    return std::isnan(min) == std::isnan(max);
}

std::optional<MessageLine> messageLine(const RecordedMessage &message) {
    const Row *row = rowOf(message.member);
    if (!row) return std::nullopt;

    const bool holdsData = row->arguments.starts_with("p d s");
    const std::size_t documentArgument = row->arguments.starts_with("p d") ? 1 : 0;
    std::optional<std::string> text;
    if (!row->command.empty()) text = callPlwLine(*row, message);
    if (!text && holdsData) text = linesOfLongText(*row, message);
    if (!text) text = busctlLine(message, documentArgument);

    MessageLine line;
    line.document = std::get<std::string>(message.arguments[documentArgument]);
    line.text = *text;
    line.opens = message.member == openingMember;
    if (row->effect == Effect::setsRange && setsAll(message)) line.setting = message.member;
    line.keepsData = row->effect != Effect::anything;
    line.selects = message.member.starts_with("selectCurvesOf_");
    const bool holdsNumbers =
        holdsData || line.opens || message.member == "readFormulaParameterOf_parameterList_";
    if (holdsNumbers) line.decimalSeparator = message.decimalSeparator;
    return line;
}

} // namespace plotwerk
