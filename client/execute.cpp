#include "client/execute.h"

#include "client/commands.h"
#include "client/text.h"

#include <cstdio>
#include <cstring>
#include <iterator>
#include <span>

std::string documentName;

struct CommandRow {
    const char *name;
    Command *run;
};

static constexpr CommandRow withoutDocument[] = {
    {"parentPID", command::parentPID},
    {"sync", command::sync},
    {"activeDoc", command::activeDoc},
};

static constexpr CommandRow onDocument[] = {
    {"selectCurve", command::selectCurve},
    {"YatX", command::YatX},
    {"Yi", command::Yi},
    {"iAtX", command::iAtX},
    {"iAtXY", command::iAtXY},
    {"setYi", command::setYi},
    {"selectedIndex", command::selectedIndex},
    {"fitCurveIndex", command::fitCurveIndex},
    {"mouseClick", command::mouseClick},
    {"replaceData", command::replaceData},
    {"readData", command::readData},
    {"activate", command::activate},
    {"print", command::print},
    {"statistic", command::statistic},
    {"selectCurveByPosition", command::selectCurveByPosition},
    {"setAttributes", command::setAttributes},
    {"setAttributes2", command::setAttributes2},
    {"setDocAttributes", command::setDocAttributes},
    {"selectCurveByIndex", command::selectCurveByIndex},
    {"searchMaxima", command::searchMaxima},
    {"getXRange", command::getXRange},
    {"getFitRange", command::getFitRange},
    {"getYRange", command::getYRange},
    {"getVar", command::getVar},
    {"createCurveAtSelection", command::createCurveAtSelection},
    {"changeNameOfSelection", command::changeNameOfSelection},
    {"indexOfCurveName", command::indexOfCurveName},
    {"nextMarkedCurve", command::nextMarkedCurve},
    {"markSelectedCurves", command::markSelectedCurves},
    {"modifyX", command::modifyX},
    {"modifyY", command::modifyY},
    {"show", command::show},
    {"diff", command::diff},
    {"fit", command::fit},
    {"delete", command::deleteSelection},
    {"sortByX", command::sortByX},
    {"sortBySelection", command::sortBySelection},
    {"swapWithX", command::swapWithX},
    {"markSelectionAsFitData", command::markSelectionAsFitData},
    {"newDocument", command::newDocument},
    {"display", command::display},
    {"open", command::open},
    {"saveDocument", command::saveDocument},
    {"savePDF", command::savePDF},
    {"saveEPS", command::saveEPS},
    {"copyPDF", command::copyPDF},
    {"saveTIFF", command::saveTIFF},
    {"copyTIFF", command::copyTIFF},
    {"newComposition", command::newComposition},
    {"addPDFtoComposition", command::addPDFtoComposition},
    {"savePDFofComposition", command::savePDFofComposition},
    {"setFormulaParameters", command::setFormulaParameters},
    {"getFormulaParameters", command::getFormulaParameters},
    {"setFormula", command::setFormula},
    {"getFormula", command::getFormula},
    {"setXRange", command::setXRange},
    {"setFitRange", command::setFitRange},
    {"setYRange", command::setYRange},
    {"setAxis", command::setAxis},
    {"placeText", command::placeText},
    {"copy", command::copy},
    {"setDecimalSeparator", command::setDecimalSeparator},
    {"pasteData", command::pasteData},
    {"duplicateAsPlotted", command::duplicateAsPlotted},
    {"inventory", command::inventory},
    {"close", command::close},
};

static_assert(std::size(withoutDocument) + std::size(onDocument) == 69);

static Command *find(std::span<const CommandRow> rows, const char *name) {
    for (const CommandRow &row : rows) {
        if (std::strcmp(row.name, name) == 0) return row.run;
    }
    return nullptr;
}

// A name given by -d first, then the remembered one, then the front document's: a target once known
// stays, even if another document has come to the front meanwhile.
static void settleDocument(PlotwerkControl &plotwerk, const Options &options) {
    if (*options['d']) {
        documentName = utf8Text(options['d']);
    } else if (documentName.empty()) {
        documentName = plotwerk.documentNameOfFrontWindow();
    }
}

static void reportUnknown(const char *name, const Options &options) {
    std::fprintf(stderr, "unknown command: %s", name);
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        if (*options[letter]) std::fprintf(stderr, " -%c %s", letter, options[letter]);
    }
    std::fputc('\n', stderr);
}

void execute(PlotwerkControl &plotwerk, const char *command, const OptionSlots &slots,
             const char *fText, const char *pText) {
    const Options options{slots, fText, pText};
    if (Command *run = find(withoutDocument, command)) return run(plotwerk, options);

    settleDocument(plotwerk, options);
    if (documentName.empty()) return;

    if (Command *run = find(onDocument, command)) return run(plotwerk, options);
    reportUnknown(command, options);
}
