// Documents that are saved come back whole.
#include "plotwerk/files/documentFile.h"
#include "plotwerk/files/documentFields.h"
#include "tests/plotwerk/files/fullDocument.h"

#include <gtest/gtest.h>

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
    auto counter = [&](const char *, auto &) { --count; };
    fields(counter, record);
    return count;
}

TEST(DocumentFile, SavesEveryMemberOfEveryRecord) {
    EXPECT_EQ(membersNotSaved<Document>(), 3) << "path, changed, lastSaveSucceeded";
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
            document.changed = document.lastSaveSucceeded = true;
            const std::string bytes = saved(document, binary);
            EXPECT_TRUE(beginsAsDocument(bytes));
            const Document back = documentOf(bytes);
            EXPECT_EQ(linesOf(back), linesOf(document)) << "binary " << binary;
            EXPECT_TRUE(back.path.empty() && !back.changed && !back.lastSaveSucceeded);
        }
        Document document;
        document.name = "r\xf6hre";
        EXPECT_EQ(documentOf(saved(document, binary)).name, "r\u00f6hre") << "not UTF-8";
    }
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
}
