#include "plotwerk/model/change.h"

#include "plotwerk/data/exchange.h"
#include "plotwerk/files/documentFile.h"
#include "plotwerk/fit/documentFit.h"
#include "plotwerk/model/attributes.h"
#include "plotwerk/model/editing.h"
#include "plotwerk/model/points.h"
#include "plotwerk/model/ranges.h"
#include "plotwerk/model/selection.h"
#include "tests/plotwerk/model/documents.h"

#include <functional>
#include <limits>
#include <sstream>

using namespace plotwerk;

TEST(Change, IsUnsavedUntilSavedAndAViewIsNot) {
    Document document = sample();
    const auto select = [](Document &d) { selectByIndex(d, {1, 1}, false); };
    const auto rename = [](Document &d) { renameSelection(d, "n"); };
    const std::pair<std::function<void()>, bool> steps[] = {
        {[&] { changeView(document, select); }, false}, {[&] { change(document, rename); }, true},
        {[&] { changeView(document, select); }, true},  {[&] { setSaved(document); }, false},
        {[&] { changeView(document, select); }, false}, {[&] { change(document, rename); }, true}};
    EXPECT_FALSE(hasUnsavedChanges(document));
    for (const auto &[step, unsaved] : steps) {
        step();
        EXPECT_EQ(hasUnsavedChanges(document), unsaved) << document.revision;
    }
    EXPECT_EQ(document.revision, 5u) << "a view counts, too, saving doesn't";
}

// The text of all that is saved stays, byte for byte, and no revision is counted.
TEST(Change, ThatIsRefusedLeavesNoTrace) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    using Work = std::function<void(Document &)>;
    const Work refusedWithSelection[] = {
        [](Document &d) { selectByName(d, "", 9, "", true); },
        [](Document &d) { selectByPattern(d, "(", -1, "", false); },
        [](Document &d) {
            selectByPosition(d, {1, 1}, {1, 9}, {}, false);
        },
        [](Document &d) {
            selectByIndex(d, {0, 99}, false);
        },
        [](Document &d) { replaceData(d, "new", "word"); },
        [](Document &d) { appendData(d, "new", ""); },
        [](Document &d) { addData(d, "new", "word"); },
        [](Document &d) { setValueAtIndex(d, 2, 0, 1); },
        [](Document &d) { setValueAtIndex(d, 0, 9, 1); },
        [](Document &d) { searchExtremes(d, true, true, 1, 1e9); },
        [](Document &d) { createCurve(d, 0, 1, -1, 0, 0); },
        [](Document &d) { changeLook(d, LookSwitches{.line = 0, .symbols = 3}); },
        [](Document &d) { changeLook(d, LookValues{.sum = 1, .lineThickness = 51}); },
        [](Document &d) { changeFrame(d, {.xAxisLength = 5, .noLineOnReverse = -1}); },
        [](Document &d) { changeAxis(d, 1, {.ticks = 1, .labelDensity = 0}); },
        [](Document &d) { placeText(d, {.text = "t", .x = infinity}); },
        [](Document &d) { setRange(d, yAxis, 1, infinity); },
        [](Document &d) { setFitRange(d, 1, 1); },
        [](Document &d) { setFormula(d, "a * ("); },
        [](Document &d) { setParameters(d, "a = 5, z = 1"); },
        [](Document &d) {
            if (fitDocument(d).status != fitConverged) throw Refusal("not fitted");
        }};
    const Work refusedWithout[] = {[](Document &d) { renameSelection(d, "n"); },
                                   [](Document &d) { sortBySelection(d, true); },
                                   [](Document &d) { modifySelection(d, true); },
                                   [](Document &d) { setLocalRange(d, true); },
                                   [](Document &d) { setValueAtIndex(d, 0, -1, 1); },
                                   [](Document &d) { changeLook(d, LookSwitches{}); },
                                   showSelection,
                                   deleteSelection,
                                   sortByX,
                                   swapSelectionWithX,
                                   differentiateSelection,
                                   markFitData};

    Document document = sample();
    setFormula(document, "a + b * x + c");
    const auto text = [&] {
        std::ostringstream stream;
        writeDocument(stream, document, false);
        return stream.str();
    };
    const auto expectNoTrace = [&](const Work &work, auto counted) {
        const std::string before = text();
        EXPECT_THROW(counted(document, work), Refusal);
        EXPECT_TRUE(text() == before);
        EXPECT_EQ(document.revision, 0u);
    };
    for (const Work &work : refusedWithout) expectNoTrace(work, change<const Work &>);
    selectByIndex(document, {0, 0}, false);
    for (const Work &work : refusedWithSelection) {
        expectNoTrace(work, change<const Work &>);
        expectNoTrace(work, changeView<const Work &>);
    }
}
