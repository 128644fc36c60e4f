// commands.h - the 69 commands. Each reads its options, sends its messages about documentName and
// prints the answer, if it has one.
#ifndef CALLPLW_COMMANDS_H
#define CALLPLW_COMMANDS_H

#include "client/options.h"
#include "client/plotwerkControl.h"

using Command = void(PlotwerkControl &plotwerk, const Options &options);

namespace command {

// No target document needed: documentlessCommands.cpp
Command parentPID;
Command sync;
Command activeDoc;

// Points and values: pointCommands.cpp
Command YatX;
Command Yi;
Command iAtX;
Command iAtXY;
Command setYi;
Command selectedIndex;
Command fitCurveIndex;
Command mouseClick;

// Choosing curves: selectionCommands.cpp
Command selectCurve;
Command selectCurveByPosition;
Command selectCurveByIndex;
Command indexOfCurveName;
Command nextMarkedCurve;
Command markSelectedCurves;
Command markSelectionAsFitData;

// The look of curves, axes and texts: attributeCommands.cpp
Command setAttributes;
Command setAttributes2;
Command setDocAttributes;
Command setAxis;
Command placeText;

// Ranges, formula and fit: fitCommands.cpp
Command getXRange;
Command getFitRange;
Command getYRange;
Command setXRange;
Command setFitRange;
Command setYRange;
Command getVar;
Command setFormulaParameters;
Command getFormulaParameters;
Command setFormula;
Command getFormula;
Command fit;

// Documents, pictures and compositions: documentCommands.cpp
Command activate;
Command print;
Command close;
Command newDocument;
Command display;
Command open;
Command saveDocument;
Command savePDF;
Command saveEPS;
Command saveTIFF;
Command copyPDF;
Command copyTIFF;
Command newComposition;
Command addPDFtoComposition;
Command savePDFofComposition;

// Data text, clipboard and inventory: dataCommands.cpp
Command replaceData;
Command readData;
Command copy;
Command setDecimalSeparator;
Command pasteData;
Command duplicateAsPlotted;
Command inventory;

// Editing and analysing curves: editingCommands.cpp
Command statistic;
Command searchMaxima;
Command createCurveAtSelection;
Command changeNameOfSelection;
Command modifyX;
Command modifyY;
Command show;
Command diff;
Command deleteSelection;
Command sortByX;
Command sortBySelection;
Command swapWithX;

} // namespace command

#endif
