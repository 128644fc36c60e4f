// commandTable.h - the commands by name.
#ifndef CALLPLW_COMMANDTABLE_H
#define CALLPLW_COMMANDTABLE_H

#include "client/commands.h"

#include <iterator>

struct CommandRow {
    const char *name;
    Command *run;
};

// These need no target document.
constexpr CommandRow withoutDocument[] = {
    {"parentPID", command::parentPID},
    {"sync", command::sync},
    {"activeDoc", command::activeDoc},
};

// In the order in which names are tried.
constexpr CommandRow onDocument[] = {
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

#endif
