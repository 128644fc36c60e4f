// Documents that are saved come back whole.
#include "plotwerk/files/documentFile.h"
#include "plotwerk/files/documentFields.h"
#include "tests/plotwerk/fullDocument.h"

#include <gtest/gtest.h>
#include <sstream>

using namespace plotwerk;

static std::string saved(const Document &document, bool binary) {
    std::ostringstream stream;
    writeDocument(stream, document, binary);
    return stream.str();
}

// Converts to any member, so that the longest list that initialises T counts its members.
struct AnyMember {
    template<class T> operator T() const;
};

template<class T, class... Members> constexpr size_t memberCount() {
    if constexpr (requires { T{Members{}..., AnyMember{}}; }) {
        return memberCount<T, Members..., AnyMember>();
    } else {
        return sizeof...(Members);
    }
}

template<class T> static size_t savedCount() {
    size_t count = 0;
    T record;
    auto counter = [&](const char *, auto &) { ++count; };
    fields(counter, record);
    return count;
}

TEST(DocumentFile, SavesEveryMemberOfEveryRecord) {
    EXPECT_EQ(savedCount<Colour>(), memberCount<Colour>());
    EXPECT_EQ(savedCount<CurveLook>(), memberCount<CurveLook>());
    EXPECT_EQ(savedCount<Column>(), memberCount<Column>());
    EXPECT_EQ(savedCount<Table>(), memberCount<Table>() - 1) << "all but xOrder";
    EXPECT_EQ(savedCount<Source>(), memberCount<Source>());
    EXPECT_EQ(savedCount<Range>(), memberCount<Range>());
    EXPECT_EQ(savedCount<Axis>(), memberCount<Axis>());
    EXPECT_EQ(savedCount<PlacedText>(), memberCount<PlacedText>());
    EXPECT_EQ(savedCount<Frame>(), memberCount<Frame>());
    EXPECT_EQ(savedCount<FitParameter>(), memberCount<FitParameter>());
    EXPECT_EQ(savedCount<FitResult>(), memberCount<FitResult>());
    EXPECT_EQ(savedCount<Document>(), memberCount<Document>() - 3)
        << "all but path, changed and lastSaveSucceeded";
}

TEST(DocumentFile, GivesEveryFieldBackBitForBit) {
    for (const bool binary : {false, true}) {
        for (const Document &document : {Document{}, smallDocument(), fullDocument()}) {
            const std::string bytes = saved(document, binary);
            EXPECT_TRUE(beginsAsDocument(bytes));
            EXPECT_EQ(linesOf(documentOf(bytes)), linesOf(document)) << "binary " << binary;
        }
    }
}

TEST(DocumentFile, ForgetsWhatBelongsToOneRun) {
    Document document;
    document.path = "/somewhere";
    document.changed = true;
    document.lastSaveSucceeded = true;
    const Document back = documentOf(saved(document, true));
    EXPECT_EQ(back.path, "");
    EXPECT_FALSE(back.changed);
    EXPECT_FALSE(back.lastSaveSucceeded);
}

TEST(DocumentFile, NamesThatAreNotUtf8StillSave) {
    Document document;
    document.name = "r\xf6hre";
    for (const bool binary : {false, true}) {
        EXPECT_EQ(documentOf(saved(document, binary)).name, "r\u00f6hre");
    }
}

TEST(DocumentFile, IsToldFromDataTextByItsFirstBytes) {
    for (const char *document : {"{", " \n{\"format\"", "\xef\xbb\xbf{}", "\xd9\xd9\xf7"}) {
        EXPECT_TRUE(beginsAsDocument(document)) << document;
    }
    for (const char *dataText : {"", "1 2\n", "# {\n", "x {", "\xd9\xd9", "[1]"}) {
        EXPECT_FALSE(beginsAsDocument(dataText)) << dataText;
    }
}
