#include "plotwerk/server/recordedMessage.h"

#include "plotwerk/application/application.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/server/controlObject.h"
#include "tests/plotwerk/server/randomMessages.h"

#include <bit>
#include <climits>
#include <gtest/gtest.h>
#include <set>

using namespace plotwerk;

TEST(RecordedMessage, GivesItsArgumentsBackBitForBit) {
    const std::string text = "\u00e4\n\t\U0001F600" + std::string(100'000, 'x'), empty;
    const double nan = std::bit_cast<double>(0xfff8'0000'dead'beefULL);
    const std::int32_t least = INT_MIN;
    const double minusZero = -0.0;
    const bool yes = true;
    const std::string record =
        encodedMessage(',', "mixed", std::tie(text, least, minusZero, yes, empty, nan)).whole();
    const RecordedMessage message = decodedMessage(record);
    EXPECT_EQ(message.decimalSeparator, ',');
    EXPECT_EQ(message.member, "mixed");
    ASSERT_EQ(message.arguments.size(), 6U);
    EXPECT_EQ(message.arguments[0], Argument(text));
    EXPECT_EQ(message.arguments[1], Argument(INT_MIN));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(std::get<double>(message.arguments[2])), 1ULL << 63);
    EXPECT_EQ(message.arguments[3], Argument(true));
    EXPECT_EQ(message.arguments[4], Argument(empty));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(std::get<double>(message.arguments[5])),
              0xfff8'0000'dead'beefULL);

    for (std::size_t length = record.size() - 8; length < record.size(); ++length)
        EXPECT_THROW(decodedMessage(std::string_view(record).substr(0, length)), Refusal);
    EXPECT_THROW(decodedMessage(record + 'q'), Refusal);
    EXPECT_TRUE(
        decodedMessage(encodedMessage('.', "none", std::tuple<>()).whole()).arguments.empty());
}

// Messages after it are refused as ever: a selection that finds none isn't, when a journal repeats.
TEST(RecordedMessage, ThatIsDamagedChangesNothingForLaterOnes) {
    Application application;
    application.add({.name = "doc"});
    ControlObject object(application);
    const std::string name = "doc";
    for (const bool damaged : {true, false}) {
        if (damaged)
            EXPECT_THROW(object.repeat(encodedMessage('.', "none", std::tuple<>()).whole()),
                         Refusal);
        else
            object.repeat(encodedMessage('.', "setXTitleOf_to_", std::tie(name, name)).whole());
        object.perform({'.',
                        "selectCurvesOf_sourceName_table_column_appendSelection_",
                        {name, std::string("none"), -1, std::string(), false}});
        EXPECT_TRUE(hasSelectedNone(application.lastError)) << application.lastError;
        application.lastError.clear();
    }

    const auto title = [&](std::vector<Argument> arguments) {
        object.perform({'.', "setXTitleOf_to_", std::move(arguments)});
    };
    const Argument doc = std::string("doc"), text = std::string("text");
    for (const auto &wrong : {std::vector{doc}, {doc, text, text}, {doc, Argument(1.5)}, {}})
        EXPECT_THROW(title(wrong), Refusal) << wrong.size();
    EXPECT_EQ(application.document("doc").axes[xAxis].title, "doc");
    title({doc, text});
    EXPECT_EQ(application.document("doc").axes[xAxis].title, "text");
}

TEST(RecordedMessage, IsRepeatedWithItsOwnDecimalSeparator) {
    Application application;
    application.add({.name = "doc"});
    ControlObject object(application);
    const std::string data = "1,5 2,5\n", doc = "doc", source = "s";
    const bool range = false;
    for (const auto &[separator, x] : {std::pair{',', 1.5}, {'.', 1.0}}) {
        object.repeat(encodedMessage(separator, "replaceDataformText_of_source_doRangeOverAll_",
                                     std::tie(data, doc, source, range))
                          .whole());
        EXPECT_EQ(application.document("doc").sources.at(0).tables.at(0).x.values.at(0), x);
    }
}

// One that changes the document counts one revision, a refused one and one that asks count none.
TEST_F(ServerTest, EveryMessageCountsItsRevision) {
    start();
    const std::set<std::string> elsewhere{
        "closeDocument",   "display",        "duplicateAsPlottedOf", "newDocumentWithName",
        "openFile",        "printDoc",       "pasteDataOf",          "savePDFofCompositionView",
        "saveDocument",    "savePictureEPS", "savePicturePDF",       "savePictureTIFF",
        "copyPDF",         "copyTIFF",       "newCompositionView",   "addPDFtoCompositionView",
        "setDeciSeparator"};
    const auto isDocument = [](const Method::Argument &argument) {
        return &valuesOf(argument) == &valuesOf({"of", "s"});
    };
    const std::set<std::string> answeredChanges{"startFitOf", "markSelectedCurvesOf",
                                                "nameOfNextMarkedCurveOf"};
    const std::set<std::string> silentQuestions{"actify", "waitForEmptyReply",
                                                "copySelectedCurvesOf"};
    Application application;
    ControlObject object(application);
    const auto repeat = [&](const std::string &member, const Values &values) {
        GatheredBytes record;
        record.putNumber('.');
        record.putText(member);
        for (const Value &value : values)
            std::visit(
                [&](const auto &each) {
                    if constexpr (isArgument<std::decay_t<decltype(each)>>)
                        putArgument(record, each);
                },
                value);
        object.repeat(record.whole());
    };
    Document &document = application.add({.name = "doc"});
    Random random(1);
    std::set<std::string> done, refused;
    setLogLevel(LogLevel::error);
    const std::vector<Method> methods = methodsOf(*connection);
    for (int i = 0; i < 4000; ++i) {
        if (i % 50 == 0) {
            document = {.name = "doc"};
            repeat("replaceDataformText_of_source_doRangeOverAll_",
                   {"x a b \"a error\"\n0 1 5 1\n1 3 4 2\n2 5 6 1\n", "doc", "Data", false});
            repeat("selectCurvesOf_indexFirst_indexLast_appendSelection_", {"doc", 0, 0, false});
        }
        const Method &method = methods[static_cast<std::size_t>(i) % methods.size()];
        const std::string keyword = method.keyword();
        if (elsewhere.contains(keyword)) continue;
        Values values = random.arguments(method);
        for (std::size_t k = 0; k < values.size(); ++k)
            if (isDocument(method.arguments[k])) values[k] = "doc";
        const std::uint64_t before = document.revision;
        application.lastError.clear();
        repeat(method.name, values);
        const bool isDone = application.lastError.empty();
        (isDone ? done : refused).insert(method.name);
        const bool changes = answeredChanges.contains(keyword) ||
                             (method.results.empty() && !silentQuestions.contains(keyword));
        EXPECT_EQ(document.revision - before, isDone && changes) << method.name;
    }
    setLogLevel(LogLevel::info);
    EXPECT_GT(done.size(), 50U);
    EXPECT_GT(refused.size(), 40U);
}
