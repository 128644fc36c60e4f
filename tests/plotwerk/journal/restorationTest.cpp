#include "plotwerk/journal/restoration.h"

#include "plotwerk/model/change.h"
#include "tests/plotwerk/base/refusalOf.h"
#include "tests/plotwerk/files/fullDocument.h"

#include <gtest/gtest.h>

using namespace plotwerk;

namespace {

// Two tables of two and three columns, the values of each its number and those that follow.
Document documentOfTables() {
    Document document;
    document.sources.resize(1);
    double number = 0;
    const auto next = [&] { return Column{.values = std::vector<double>(1000, ++number)}; };
    for (const std::size_t curves : {1U, 2U}) {
        Table table{.x = next()};
        while (table.y.size() < curves) table.y.push_back(next());
        document.sources[0].tables.push_back(std::move(table));
    }
    return document;
}

std::vector<double> firstValues(const Document &document) {
    std::vector<double> values;
    forColumns(document, [&](const Column &column) { values.push_back(column.values.at(0)); });
    return values;
}

std::string encoded(Document &version, const ColumnOrigins &origins) {
    const auto bytes = encodedRestoration(version, origins);
    return bytes ? bytes->whole() : "";
}

} // namespace

TEST(Restoration, MakesTheDocumentOfTheOneBefore) {
    const struct {
        const char *what;
        ColumnOrigins origins;
        std::vector<double> want;
        std::size_t most; // bytes
    } cases[] = {
        {"all stay", {0, 1, 2, 3, 4}, {1, 2, 3, 4, 5}, 6000},
        {"some have others", {0, -1, 2, -1, 4}, {1, 20, 3, 40, 5}, 22'000},
        {"exchanged", {1, 0, 4, 2, 3}, {2, 1, 5, 3, 4}, 6000},
        {"none stays", {-1, -1, -1, -1, -1}, {10, 20, 30, 40, 50}, 46'000},
    };
    for (const auto &c : cases) {
        Document version = documentOfTables();
        version.title = c.what;
        forColumns(version,
                   [&](Column &column) { column.values.assign(1000, 10 * column.values[0]); });
        const std::string record = encoded(version, c.origins);
        EXPECT_TRUE(isRestoration(record));
        EXPECT_LT(record.size(), c.most) << c.what;
        Document document = documentOfTables();
        document.path = "/own";
        restoreBy(record, document);
        EXPECT_EQ(document.title, c.what);
        EXPECT_EQ(document.path, "/own");
        EXPECT_EQ(firstValues(document), c.want) << c.what;
        EXPECT_FALSE(hasUnsavedChanges(document)) << c.what;
    }
    Document version = fullDocument();
    change(version, [](Document &) {});
    Document document = documentOfTables();
    std::size_t columns = 0;
    forColumns(version, [&](const Column &) { ++columns; });
    restoreBy(encoded(version, ColumnOrigins(columns, -1)), document);
    EXPECT_EQ(linesOf(document), linesOf(version));
    EXPECT_TRUE(hasUnsavedChanges(document));
}

TEST(Restoration, RefusesDamageAndWhatFitsNoDocument) {
    Document version = documentOfTables();
    const std::string record = encoded(version, {0, -1, 2, -1, 4});
    Document document = documentOfTables();
    const auto before = linesOf(document);
    const auto why = [&](const std::string &wrong) {
        return refusalOf([&] { restoreBy(wrong, document); });
    };
    for (std::size_t length = 1; length < record.size(); length += 1 + length / 50)
        EXPECT_EQ(why(record.substr(0, length)), "damaged: cut off") << length;
    const std::string misfit = "damaged: not the values of its columns";
    EXPECT_EQ(why(record + 'x'), misfit);
    std::string half = encoded(version, {0, 1, 2, 3, -1});
    half.pop_back();
    const std::uint64_t length = 7999;
    half.replace(half.size() - 7999 - 8, 8, reinterpret_cast<const char *>(&length), 8);
    EXPECT_EQ(why(half), "damaged: half a value");
    for (const ColumnOrigins &wrong : {ColumnOrigins{0, 1, 2, 3, 5}, ColumnOrigins{0, 1, 2, 2, 4}})
        EXPECT_EQ(why(encoded(version, wrong)), "damaged: a column from nowhere");
    for (int shorter = 0; shorter < 5; ++shorter) {
        version = documentOfTables();
        int column = 0;
        forColumns(version,
                   [&](Column &each) { each.values.resize(column++ == shorter ? 999 : 1000); });
        EXPECT_EQ(why(encoded(version, {-1, -1, -1, -1, -1})), misfit) << shorter;
    }
    EXPECT_EQ(linesOf(document), before);
}

TEST(Restoration, IsNoneOfMoreThanAHundredColumnsOfTheirOwn) {
    for (const int own : {100, 101}) {
        Document document = documentOfTables();
        document.sources[0].tables[0].y.resize(200, document.sources[0].tables[0].x);
        ColumnOrigins origins(204, 0);
        std::fill_n(origins.begin(), own, -1);
        EXPECT_EQ(encodedRestoration(document, origins).has_value(), own == 100);
    }
}
