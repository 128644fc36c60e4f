// Stands in for parts of the model until they are merged.
#include "plotwerk/model/editing.h"
#include "plotwerk/model/exchange.h"
#include "plotwerk/model/points.h"
#include "plotwerk/model/ranges.h"
#include "plotwerk/model/selection.h"
#include "plotwerk/model/statistic.h"
#include "plotwerk/refusal.h"
#define W __attribute__((weak))
#define P { throw Refusal("not there yet"); }
namespace plotwerk {
W Column &columnOf(Document &, const CurveRef &) P
W void renameSelection(Document &, const std::string &) P
W void showSelection(Document &) P
W void deleteSelection(Document &) P
W void deleteAllCurves(Document &) P
W void sortByX(Document &) P
W void sortBySelection(Document &, bool) P
W void swapSelectionWithX(Document &) P
W void differentiateSelection(Document &) P
W void createCurve(Document &, double, double, double, double, double) P
W void searchExtremes(Document &, bool, bool, int, double) P
W void replaceData(Document &, const std::string &, std::string) P
W void appendData(Document &, const std::string &, std::string) P
W void addSource(Document &, const std::string &, std::string) P
W std::string dataTextOfSelection(const Document &, bool) P
W Document duplicateAsPlotted(const Document &) P
W std::string freeName(const std::string &name, const std::vector<std::string> &) { return name; }
W double valueAtX(const Document &, double, int) P
W double valueAtIndex(const Document &, int, int) P
W void setValueAtIndex(Document &, int, int, double) P
W int indexAtX(const Document &, double, int) P
W std::optional<NearestPoint> nearestPoint(const Document &, double, double) P
W Range rangeOf(const Document &, AxisCode) P
W void setRange(Document &, AxisCode, double, double) P
W void rangeOverAll(Document &) {}
W void setLocalRange(Document &, bool) P
W Range fitRangeOf(const Document &) P
W void setFitRange(Document &, double, double) P
W int selectByName(Document &, const std::string &, int, const std::string &, bool) P
W int selectByPattern(Document &, const std::string &, int, const std::string &, bool) P
W int selectByPosition(Document &, IndexRange, IndexRange, IndexRange, bool) P
W int selectByIndex(Document &, IndexRange, bool) P
W int indexOfCurveNamed(const Document &, const std::string &, int, const std::string &) P
W int indexOfCurveMatching(const Document &, const std::string &, int, const std::string &) P
W int indexOfSelectedCurve(const Document &) P
W int markSelection(Document &) P
W std::optional<CurveRef> nextMarkedCurve(Document &) P
W void markFitData(Document &) P
W int indexOfFitCurve(const Document &) P
W Inventory inventoryOf(const Document &, bool, bool) P
W Statistic statisticOfSelection(const Document &) P
}
