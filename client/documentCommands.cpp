#include "client/answer.h"
#include "client/commands.h"
#include "client/execute.h"

namespace command {

void activate(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.actify_(documentName);
}

void print(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.printDoc_(documentName);
}

void close(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.closeDocument_askForSave_(documentName, yesNo(options['a']));
    documentName.clear();
}

void newDocument(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.newDocumentWithName_(documentName);
}

void display(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.display_doRangeOverAll_(documentName, yesNo(options['r']));
}

void open(PlotwerkControl &plotwerk, const Options &options) {
    const std::string path = textOf(options.fText);
    const bool rangeOverAll = yesNo(options['r']);
    plotwerk.openFile_file_doRangeOverAll_(documentName, path, rangeOverAll);
    documentName.clear(); // the next command addresses the document now in front
}

static void reportSave(PlotwerkControl &plotwerk) {
    answer("save %s\n", plotwerk.didSaveSucceed_(documentName) ? "succeeded" : "ERROR");
}

void saveDocument(PlotwerkControl &plotwerk, const Options &options) {
    const std::string path = textOf(options.fText);
    const bool keepOwnPath = yesNo(options['k']);
    const bool binary = yesNo(options['b']);
    if (keepOwnPath) {
        plotwerk.saveDocument_to_binary_(documentName, path, binary);
    } else {
        plotwerk.saveDocument_as_binary_(documentName, path, binary);
    }
    reportSave(plotwerk);
}

void savePDF(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.savePicturePDF_as_(documentName, textOf(options.fText));
    reportSave(plotwerk);
}

void saveEPS(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.savePictureEPS_as_(documentName, textOf(options.fText));
    reportSave(plotwerk);
}

void saveTIFF(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.savePictureTIFF_as_(documentName, textOf(options.fText));
    reportSave(plotwerk);
}

void copyPDF(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.copyPDF_(documentName);
}

void copyTIFF(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.copyTIFF_(documentName);
}

// A composition is measured in single precision, and what is not given is 0, not NaN.
static double single(const char *text) {
    return static_cast<float>(real(text, 0.0));
}

static sdbus::Struct<double, double, double, double> rectangle(const Options &options) {
    return {single(options['X']), single(options['Y']), single(options['w']), single(options['h'])};
}

void newComposition(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.newCompositionView_(rectangle(options));
}

void addPDFtoComposition(PlotwerkControl &plotwerk, const Options &options) {
    const double angle = real(options['a'], 0.0);
    const double sheer = real(options['s'], 0.0);
    plotwerk.addPDFtoCompositionView_inRect_angle_sheer_(documentName, rectangle(options), angle,
                                                         sheer);
}

void savePDFofComposition(PlotwerkControl &plotwerk, const Options &options) {
    const std::string path = textOf(options.fText);
    const std::string opener = textOf(options['a']);
    plotwerk.savePDFofCompositionView_openWith_(path, opener);
}

} // namespace command
