// What would take more than a message may take is refused before it begins.
#include "plotwerk/application/application.h"
#include "plotwerk/base/bounds.h"
#include "plotwerk/data/dataText.h"
#include "plotwerk/data/dataTextWriter.h"
#include "plotwerk/data/exchange.h"
#include "plotwerk/drawing/hitTest.h"
#include "plotwerk/files/documentFile.h"
#include "plotwerk/fit/documentFit.h"
#include "plotwerk/fit/modifyByFormula.h"
#include "plotwerk/model/change.h"
#include "plotwerk/model/duplicate.h"
#include "plotwerk/model/editing.h"
#include "plotwerk/model/selection.h"
#include "plotwerk/model/statistic.h"
#include "plotwerk/model/structure.h"
#include "tests/plotwerk/model/documents.h"

#include <functional>
#include <sstream>

using namespace plotwerk;

namespace {

class BoundedWork : public testing::Test {
  protected:
    void SetUp() override {
        setBound("memory=10");
        setBound("seconds=1");
    }
    void TearDown() override {
        setBound("memory=1000");
        setBound("seconds=10");
        setBound("documents=2000");
    }

    // With one selected curve of that many rows.
    static Document documentWith(std::size_t rows) {
        return selectedOf(
            table(std::vector<double>(rows, 1), {column("", std::vector<double>(rows, 1))}));
    }

    // Of selected curves where the formula knows the names of all.
    static Document manyFormulas(std::size_t curves, const std::string &formula) {
        Document document = documentWith(2);
        Table &table = document.sources.front().tables.front();
        table.y.resize(curves, table.y.front());
        document.frame.multiDimFit = true;
        document.formula = formula;
        return document;
    }

    static std::string repeated(const std::string &text, int times) {
        std::string all;
        for (int i = 0; i < times; ++i) all += text;
        return all;
    }
};

} // namespace

TEST_F(BoundedWork, IsRefusedByItsMemory) {
    constexpr int rows = 700'000; // two columns of 5.6 MB
    Document large = documentWith(rows);
    large.formula = "a*x";
    large.parameters = {{"a"}};
    Document many = manyFormulas(200, repeated("x*x+", 1000) + "x");
    const double before = bytesOf(large);
    const std::pair<const char *, std::function<void()>> cases[] = {
        {"create", [&] { createCurve(large, 1, rows, 1, 0, 0); }},
        {"differentiate", [&] { differentiateSelection(large); }},
        {"sort by x", [&] { sortByX(large); }},
        {"sort by y", [&] { sortBySelection(large, true); }},
        {"extremes", [&] { searchExtremes(large, true, true, 2, 0); }},
        {"statistic", [&] { statisticOfSelection(large); }},
        {"duplicate", [&] { duplicateAsPlotted(large); }},
        {"modify", [&] { modifySelection(large, true); }},
        {"modify each by its own formula", [&] { modifySelection(many, true); }},
        {"fit", [&] { fitDocument(large); }},
        {"copy", [&] { dataTextOfSelection(large, true, '.'); }},
        {"append", [&] { appendData(large, "Data", "1 2\n", '.'); }},
        {"hit test", [&] { nearestPoint(large, 1, 1); }},
        {"page", [&] { Composition(0, 0).add(large, {}, 0, 0); }},
        {"data text", [&] { readDataText(repeated("1\n", rows), '.'); }},
        {"UTF-16", [&] { readDataFile("\xff\xfe" + std::string(5'000'000, 'a'), '.'); }},
        {"ISO 8859-1", [&] { readDataFile(std::string(4'000'000, '\xe9'), '.'); }},
    };
    for (const auto &[what, work] : cases) {
        EXPECT_TRUE(refusalOf(work).ends_with("would take too much memory (limit memory)")) << what;
        EXPECT_EQ(bytesOf(large), before) << what;
    }
    const WithMemoryOfDocuments broughtBack;
    EXPECT_EQ(refusalOf([&] { appendData(large, "Data", "1 2\n", '.'); }), "");
}

TEST_F(BoundedWork, IsRefusedByItsTime) {
    setBound("memory=1000");
    Document large = documentWith(8'000'000);
    Document medium = documentWith(1'500'000);
    const std::vector<const Column *> columns(6, &medium.sources[0].tables[0].x);
    std::string data;
    Document interpolated = documentWith(3);
    Table &table = interpolated.sources[0].tables[0];
    table.x.values = {1, 2, 3};
    table.y[0].look.interpolationType = 1;
    table.y[0].look.interpolationPoints = 1e6;
    table.y[0].name = std::string(1000, 'a');
    table.y.resize(200, table.y[0]);
    Document many = manyFormulas(8000, "x");
    std::ostringstream text;
    const std::pair<const char *, std::function<void()>> cases[] = {
        {"sort", [&] { sortByX(large); }},
        {"statistic", [&] { statisticOfSelection(large); }},
        {"modify each by its own formula", [&] { modifySelection(many, true); }},
        {"maxima and minima", [&] { searchExtremes(medium, true, true, 1, 0); }},
        {"data text", [&] { writeDataText(columns, '.', data, 1e9); }},
        {"JSON", [&] { writeDocument(text, large, false); }},
        {"hit test", [&] { nearestPoint(interpolated, 1, 1); }},
        {"words", [&] { readDataText(repeated("abc def\n", 800'000), '.'); }},
        {"rows", [&] { readDataText("1;2;\n" + repeated("3;4;i;i;i;i;i;i\n", 800'000), '.'); }},
        {"names", [&] { readDataText(std::string(9'000'000, 'a') + "\n1\n", '.'); }},
        {"quotes", [&] { readDataText(repeated(std::string(124, 'a') + "\";\"\n", 60'000), '.'); }},
        {"encoding", [&] { readDataFile('\xe9' + std::string(40'000'000, 'a'), '.'); }},
        {"pattern", [&] { selectByPattern(interpolated, "", -1, ".*[ab].{150}c", false); }},
    };
    for (const auto &[what, work] : cases)
        EXPECT_EQ(refusalOf(work), "would take too long (limit seconds)") << what;
}

// However small the messages are that make them grow.
TEST_F(BoundedWork, IsRefusedByWhatTheDocumentsTakeInAll) {
    setBound("documents=5");
    Application application;
    const std::string full = "the open documents would take too much memory (limit documents)";
    const auto grow = [&] {
        change(application.create({}), [](Document &d) { createCurve(d, 1, 50'000, 1, 0, 0); });
    };
    for (int i = 0; i < 6; ++i) EXPECT_EQ(refusalOf(grow), "");
    EXPECT_EQ(refusalOf(grow), full);
    application.newComposition(0, 0);
    const Document copied = *application.front();
    EXPECT_EQ(refusalOf([&] {
                  for (int i = 0; i < 3000; ++i) application.addToComposition(copied, {}, 0, 0);
              }),
              full);
    application.newComposition(0, 0);
    application.close(application.document("Untitled"), false);
    EXPECT_EQ(refusalOf(grow), "");
}
