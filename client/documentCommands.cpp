#include "client/answer.h"
#include "client/commandTable.h"
#include "client/execute.h"

namespace command {

static void activate(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.actify_(documentName);
}

static void print(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.printDoc_(documentName);
}

static void close(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.closeDocument_askForSave_(documentName, yesNo(options['a']));
    documentName.clear();
}

static void newDocument(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.newDocumentWithName_(documentName);
}

static void display(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.display_doRangeOverAll_(documentName, yesNo(options['r']));
}

static void open(PlotwerkControl &plotwerk, const Options &options) {
    const std::string path = textOf(options.fText);
    const bool rangeOverAll = yesNo(options['r']);
    plotwerk.openFile_file_doRangeOverAll_(documentName, path, rangeOverAll);
    documentName.clear(); // the next command addresses the document now in front
}

static void reportSave(PlotwerkControl &plotwerk) {
    answer("save %s\n", plotwerk.didSaveSucceed_(documentName) ? "succeeded" : "ERROR");
}

static void saveDocument(PlotwerkControl &plotwerk, const Options &options) {
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

static void savePDF(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.savePicturePDF_as_(documentName, textOf(options.fText));
    reportSave(plotwerk);
}

static void saveEPS(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.savePictureEPS_as_(documentName, textOf(options.fText));
    reportSave(plotwerk);
}

static void saveTIFF(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.savePictureTIFF_as_(documentName, textOf(options.fText));
    reportSave(plotwerk);
}

static void copyPDF(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.copyPDF_(documentName);
}

static void copyTIFF(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.copyTIFF_(documentName);
}

// A composition is measured in single precision, and what is not given is 0, not NaN.
static double single(const OptionText &option) {
    return static_cast<float>(real(option, 0.0));
}

static sdbus::Struct<double, double, double, double> rectangle(const Options &options) {
    return {single(options['X']), single(options['Y']), single(options['w']), single(options['h'])};
}

static void newComposition(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.newCompositionView_(rectangle(options));
}

static void addPDFtoComposition(PlotwerkControl &plotwerk, const Options &options) {
    const double angle = real(options['a'], 0.0);
    const double sheer = real(options['s'], 0.0);
    plotwerk.addPDFtoCompositionView_inRect_angle_sheer_(documentName, rectangle(options), angle,
                                                         sheer);
}

static void savePDFofComposition(PlotwerkControl &plotwerk, const Options &options) {
    const std::string path = textOf(options.fText);
    const std::string opener = textOf(options['a']);
    plotwerk.savePDFofCompositionView_openWith_(path, opener);
}

static constexpr CommandRow rows[] = {
    {"activate", "", activate},
    {"print", "", print},
    {"close", "[-a yes-or-no]", close},
    {"newDocument", "", newDocument},
    {"display", "[-r yes-or-no]", display},
    {"open", "-f file [-r yes-or-no]", open},
    {"saveDocument", "[-f file] [-k yes-or-no] [-b yes-or-no]", saveDocument},
    {"savePDF", "-f file", savePDF},
    {"saveEPS", "-f file", saveEPS},
    {"saveTIFF", "-f file", saveTIFF},
    {"copyPDF", "", copyPDF},
    {"copyTIFF", "", copyTIFF},
    {"newComposition", "-X real -Y real -w real -h real", newComposition},
    {"addPDFtoComposition", "-X real -Y real -w real -h real [-a real] [-s real]",
     addPDFtoComposition},
    {"savePDFofComposition", "-f file [-a program]", savePDFofComposition},
};

constinit const CommandTable documentCommands = rows;

} // namespace command
