// Work that finds no memory, at whichever of its allocations, leaves the document as it was.
#include "plotwerk/data/exchange.h"
#include "plotwerk/fit/documentFit.h"
#include "plotwerk/fit/documentFormula.h"
#include "plotwerk/fit/modifyByFormula.h"
#include "plotwerk/model/attributes.h"
#include "plotwerk/model/duplicate.h"
#include "plotwerk/model/editing.h"
#include "plotwerk/model/ranges.h"
#include "plotwerk/model/selection.h"
#include "tests/plotwerk/files/fullDocument.h"
#include "tests/support/failingMemory.h"

#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <string>

using namespace plotwerk;

static Document exampleDocument() {
    Document document;
    addData(document, "one", "x a \"a error\" b\n3 1 2 5\n1 2 1 4\n2 4 1 9\n4 3 1 8\n\n1 2\n0 3\n",
            '.');
    addData(document, "two", "x with-a-name-too-long-for-its-place\n1 2\n2 1\n3 7\n4 2\n5 1\n",
            '.');
    selectByIndex(document, {0, 0}, false);
    selectByIndex(document, {3, 4}, true);
    setFormula(document, "slope_of_the_long_line*x+b");
    fitDocument(document);
    return document;
}

TEST(NoMemory, LeavesTheDocumentAsItWas) {
    const std::string text = "x y z\n1 2 3\n4 5 6\n\n7 8\n";
    const std::string name = "a name that is too long for its place";
    const std::pair<const char *, std::function<void(Document &)>> cases[] = {
        {"rename", [&](Document &d) { renameSelection(d, name); }},
        {"show", showSelection},
        {"delete", deleteSelection},
        {"delete all", deleteAllCurves},
        {"sort by x", sortByX},
        {"sort by y", [](Document &d) { sortBySelection(d, false); }},
        {"swap", swapSelectionWithX},
        {"differentiate", differentiateSelection},
        {"create", [](Document &d) { createCurve(d, 0, 9, 1, 0, 1); }},
        {"extremes", [](Document &d) { searchExtremes(d, true, true, 1, 0); }},
        {"modify y", [](Document &d) { modifySelection(d, true); }},
        {"modify x", [](Document &d) { modifySelection(d, false); }},
        {"replace", [&](Document &d) { replaceData(d, "one", text, '.'); }},
        {"replace none", [&](Document &d) { replaceData(d, name, text, '.'); }},
        {"append",
         [&](Document &d) { appendData(d, "one", "9 8 7 6\n\n1 2\n\n1 2 3 4 5\n", '.'); }},
        {"append to none", [&](Document &d) { appendData(d, name, text, '.'); }},
        {"select",
         [](Document &d) {
             selectByIndex(d, {1, 3}, true);
         }},
        {"mark", [](Document &d) { markSelection(d); }},
        {"fit data", markFitData},
        {"text", [&](Document &d) { placeText(d, {.text = name}); }},
        {"title", [&](Document &d) { setTitle(d, yAxis, name); }},
        {"range", [](Document &d) { setLocalRange(d, true); }},
        {"formula", [](Document &d) { setFormula(d, "amplitude_of_the_oscillation*x"); }},
        {"parameters", [](Document &d) { setParameters(d, "b = 7!", '.'); }},
        {"fit", [](Document &d) { d.parameters[0].value = 5, fitDocument(d); }},
    };
    const Document example = exampleDocument();
    for (const auto &[what, work] : cases) {
        for (long allocations = 0;; ++allocations) {
            Document document = example;
            if (std::string(what) == "fit") document.parameters[0].value = 5;
            const std::string before = saved(document, false);
            bool done = true;
            try {
                const FailingMemory failing(allocations, false);
                work(document);
            } catch (const std::bad_alloc &) {
                done = false;
            }
            if (done) {
                EXPECT_TRUE(saved(document, false) != before) << what << " does nothing";
                break;
            }
            ASSERT_TRUE(saved(document, false) == before) << what << ", allocation " << allocations;
        }
    }
}
