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
    const std::tuple<ColumnOrigins, std::vector<double>, std::size_t> cases[] = {
        {{1, 0, 4, 2, 3}, {2, 1, 5, 3, 4}, 6000}, {{0, -1, 2, -1, 4}, {1, 20, 3, 40, 5}, 22'000}};
    for (const auto &[origins, want, mostBytes] : cases) {
        Document version = documentOfTables();
        forColumns(version,
                   [&](Column &column) { column.values.assign(1000, 10 * column.values[0]); });
        const std::string record = encoded(version, origins);
        EXPECT_LT(record.size(), mostBytes);
        Document document = documentOfTables();
        restoreBy(record, document);
        EXPECT_EQ(firstValues(document), want);
        EXPECT_FALSE(hasUnsavedChanges(document));
    }
    Document version = fullDocument();
    change(version, [](Document &) {});
    Document document = documentOfTables();
    document.path = "/own";
    std::size_t columns = 0;
    forColumns(version, [&](const Column &) { ++columns; });
    const std::string record = encoded(version, ColumnOrigins(columns, -1));
    EXPECT_TRUE(isRestoration(record));
    restoreBy(record, document);
    EXPECT_EQ(linesOf(document), linesOf(version));
    EXPECT_EQ(document.path, "/own");
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
    for (Column *shorter : {&version.sources[0].tables[0].x, &version.sources[0].tables[1].y[1]}) {
        shorter->values.pop_back();
        EXPECT_EQ(why(encoded(version, {-1, -1, -1, -1, -1})), misfit);
        shorter->values.push_back(0);
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
