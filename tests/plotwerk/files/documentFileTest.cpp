// Documents that are saved come back whole.
#include "plotwerk/files/documentFile.h"
#include "plotwerk/files/atomicFile.h"
#include "plotwerk/files/documentArchive.h"
#include "plotwerk/model/change.h"
#include "plotwerk/model/names.h"
#include "tests/plotwerk/files/fullDocument.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <tuple>

using namespace plotwerk;

// Converts to any member, so that the longest list that initialises T counts its members.
struct AnyMember {
    template<class T> operator T() const;
};

template<class T, class... Members> constexpr int memberCount() {
    if constexpr (requires { T{Members{}..., AnyMember{}}; })
        return memberCount<T, Members..., AnyMember>();
    else
        return sizeof...(Members);
}

template<class T> static int membersNotSaved() {
    int count = memberCount<T>();
    T record;
    auto counter = [&](const char *, auto &, Version = {}) { --count; };
    fields(counter, record);
    return count;
}

TEST(DocumentFile, SavesEveryMemberOfEveryRecord) {
    EXPECT_EQ(membersNotSaved<Document>(), 5)
        << "path, markHint, fitStatus, revision, savedRevision";
    EXPECT_EQ(membersNotSaved<Table>(), 1) << "xOrder";
    for (const int count :
         {membersNotSaved<Source>(), membersNotSaved<Column>(), membersNotSaved<CurveLook>(),
          membersNotSaved<Colour>(), membersNotSaved<Range>(), membersNotSaved<Axis>(),
          membersNotSaved<PlacedText>(), membersNotSaved<Frame>(), membersNotSaved<FitParameter>(),
          membersNotSaved<FitResult>()})
        EXPECT_EQ(count, 0);
}

TEST(DocumentFile, GivesEveryFieldBackBitForBit) {
    for (const bool binary : {false, true}) {
        for (Document document : {Document{}, smallDocument(), fullDocument()}) {
            document.path = "/somewhere";
            change(document, [](Document &) {});
            const std::string bytes = saved(document, binary);
            EXPECT_TRUE(beginsAsDocument(bytes));
            const Document back = documentOf(bytes);
            EXPECT_EQ(linesOf(back), linesOf(document)) << "binary " << binary;
            EXPECT_TRUE(back.path.empty());
            EXPECT_FALSE(hasUnsavedChanges(back));
        }
        Document document;
        document.name = "r\xf6hre";
        EXPECT_EQ(documentOf(saved(document, binary)).name, "r\u00f6hre") << "not UTF-8";
    }
}

TEST(DocumentFile, HasTheShortestHeadsOfCbor) {
    for (const std::uint64_t value : {0x17ULL, 0x18ULL, 0xffULL, 0x100ULL, 0xffffULL, 0x10000ULL,
                                      0xffffffffULL, 0x100000000ULL, ~0ULL}) {
        std::ostringstream stream;
        TreeWriter(stream, true).write(value);
        const auto want = Tree::to_cbor(value);
        EXPECT_EQ(stream.str(), std::string(want.begin(), want.end())) << value;
    }
    std::ostringstream stream;
    TreeWriter(stream, true).write(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(stream.str(), std::string("\xf9\x7e\0", 3));
}

// A signal is heard only between two writes, and memory may be short.
TEST(DocumentFile, IsWrittenInParts) {
    struct Parts : std::streambuf {
        std::streamsize xsputn(const char *, std::streamsize count) override {
            sizes.push_back(count);
            return count;
        }
        std::vector<std::streamsize> sizes;
    };
    const auto partsOf = [](bool binary, std::size_t count) {
        Parts parts;
        std::ostream stream(&parts);
        TreeWriter(stream, binary).write(std::vector<double>(count, 0.5));
        return parts.sizes;
    };
    using Sizes = std::vector<std::streamsize>;
    EXPECT_EQ(partsOf(true, 512), (Sizes{2 + 3 + 4096})) << "few together";
    EXPECT_EQ(partsOf(true, 513), (Sizes{5, 4104, 0}));
    EXPECT_EQ(partsOf(true, 300'000), (Sizes{7, 1 << 20, 1 << 20, 302'848, 0}));
    EXPECT_EQ(partsOf(false, 40'000), (Sizes{65'536, 65'536, 28'929}));
}

TEST(DocumentFile, IsToldFromDataTextByItsFirstBytes) {
    for (const char *document : {"{", " \n{\"format\"", "\xef\xbb\xbf{}", "\xd9\xd9\xf7"})
        EXPECT_TRUE(beginsAsDocument(document)) << document;
    for (const char *dataText : {"", "1 2\n", "# {\n", "x {", "\xd9\xd9", "[1]"})
        EXPECT_FALSE(beginsAsDocument(dataText)) << dataText;
}

TEST(DocumentFile, MayBeWrittenByHand) {
    Document document;
    std::string text = saved(document, false);
    text.replace(text.find("\"xAxisLength\":12.0"), 18, "\"new\" : [ {} ],\n \"xAxisLength\" : 12");
    EXPECT_EQ(linesOf(documentOf("\xef\xbb\xbf\n" + text)), linesOf(document));

    std::string cbor = saved(document, true); // with a text at its end
    ++cbor[3];
    EXPECT_EQ(linesOf(documentOf(cbor + "\x63new\x61x")), linesOf(document));
}

TEST(DocumentFile, OfALaterMinorVersionOpensWithALineOnTheLog) {
    std::string text = saved(smallDocument(), false);
    const std::string minor = "\"minor\":" + std::to_string(currentVersion.minor);
    text.replace(text.find(minor), minor.size(), "\"minor\":3, \"more\":[{}]");
    testing::internal::CaptureStderr();
    const Document document = documentOf(text);
    const std::string logged = testing::internal::GetCapturedStderr();
    EXPECT_EQ(linesOf(document), linesOf(smallDocument()));
    EXPECT_NE(logged.find("saved by a later Plotwerk (version 2.3 of the format)"),
              std::string::npos)
        << logged;
}

// Files that the program saved when their version was new. They never change, and more may come:
// all of one document, which saved anew is the same.
TEST(DocumentFile, OfEveryVersionOpensWithEverythingInIt) {
    const auto bytesOf = [](const std::string &name) {
        return readWholeFile(TEST_DATA_DIR "/documents/version" + name);
    };
    const auto savedAnew = [&](const std::string &name) {
        return saved(documentOf(bytesOf(name)), false);
    };
    for (const std::string version : {"1", "2", "2.1", "2.2"})
        EXPECT_EQ(savedAnew(version + ".json"), savedAnew(version + ".cbor")) << version;
    EXPECT_EQ(savedAnew("1.json"), savedAnew("2.json"));
    std::string now = bytesOf("2.2.json");
    const std::string start = "n\u00e4me \\\"\\\\/ ", controls = "\\t\\n\\u0001";
    for (const auto &[key, shown] : {std::pair("name", "   "), {"formula", "\\t\\n "}}) {
        const std::string before = '"' + std::string(key) + "\":\"" + start;
        for (std::size_t at; (at = now.find(before + controls)) != std::string::npos;)
            now.replace(at + before.size(), controls.size(), shown);
    }
    EXPECT_EQ(savedAnew("2.2.json"), now);

    const Document of2 = documentOf(bytesOf("2.json"));
    const Column &a = of2.sources[0].tables[0].y[0];
    EXPECT_EQ(std::tuple(of2.name, of2.markWalk, a.marked, a.fitData, a.drawnByFit, a.rank,
                         a.look.visible, a.look.line),
              std::tuple("kept \u00e4", 1, true, true, false, 3, true, false));
    const std::vector<double> &x = of2.sources[1].tables[0].x.values;
    EXPECT_TRUE(std::isnan(x[0]) && x[1] > 0);

    const Document of2_1 = documentOf(bytesOf("2.1.json"));
    const Table &table = of2_1.sources[0].tables[0];
    const std::string text = "n\u00e4me \"\\/ \t\n\x01 \U0001F600 ";
    EXPECT_EQ(std::tuple(table.x.isTime, table.y[0].isTime, table.y[0].residuals,
                         of2_1.absoluteErrors, of2_1.title, of2_1.parameters[0].atBound),
              std::tuple(true, true, true, true, text + "735", true));
    EXPECT_EQ(of2_1.parameters[0].bounds.min, -std::numeric_limits<double>::max());
    EXPECT_EQ(table.y[0].look.symbol, (std::array{11, 12, 13, 14}));
    EXPECT_EQ(table.y[1].look.symbol, (std::array{4, 5, 6, 7})) << "36 to 39, as they were drawn";
    const FitResult &fit = of2_1.fit;
    EXPECT_EQ(std::tuple(fit.weighted, fit.absoluteErrors, fit.formula, fit.freedom, fit.rSquared,
                         fit.parameters[1].bounds.min),
              std::tuple(true, true, formulaOf(text) + "770", 786, 0x1p53, -123456789.0));
    EXPECT_EQ(fit.covariance.values, (std::vector<double>{0.1, -0.2, 0.5}));

    const FitResult without = documentOf(bytesOf("2.2.json")).fit;
    EXPECT_TRUE(without.withoutError > 0 && without.withoutValue > 0);
}
