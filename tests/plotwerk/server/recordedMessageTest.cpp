#include "plotwerk/server/recordedMessage.h"

#include "plotwerk/application/application.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/server/controlObject.h"
#include "tests/plotwerk/base/refusalOf.h"
#include "tests/plotwerk/server/serverTest.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>

using namespace plotwerk;

TEST(RecordedMessage, GivesItsArgumentsBackBitForBit) {
    const std::string text = "\u00e4\n\t\U0001F600" + std::string(100'000, 'x'), empty;
    const std::int32_t least = INT_MIN;
    const double minusZero = -0.0, small = 1e-320;
    const bool yes = true;
    const std::string record =
        encodedMessage(',', "mixed", std::tie(text, least, minusZero, yes, empty, small)).whole();
    const RecordedMessage message = decodedMessage(record);
    EXPECT_EQ(message.decimalSeparator, ',');
    EXPECT_EQ(message.member, "mixed");
    EXPECT_EQ(message.arguments,
              (std::vector<Argument>{text, least, minusZero, yes, empty, small}));
    EXPECT_TRUE(std::signbit(std::get<double>(message.arguments[2])));
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
    const std::string unknown = encodedMessage('.', "none", std::tuple<>()).whole();
    const std::string ofNone = encodedMessage('.', "newCompositionView_", std::tuple<>()).whole();
    const std::string known = encodedMessage('.', "setXTitleOf_to_", std::tie(name, name)).whole();
    for (const std::string &record : {unknown, ofNone, known}) {
        EXPECT_EQ(refusalOf([&] { object.repeat(record); }).empty(), record == known);
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
    const std::string data = "1,5 2,5\n", doc = "doc", source = "s";
    const bool range = false;
    ControlObject(application)
        .repeat(encodedMessage(',', "replaceDataformText_of_source_doRangeOverAll_",
                               std::tie(data, doc, source, range))
                    .whole());
    EXPECT_EQ(application.document("doc").sources.at(0).tables.at(0).x.values.at(0), 1.5);
}
