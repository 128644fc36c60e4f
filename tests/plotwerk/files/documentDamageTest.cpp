// Bytes that are no document are refused, whatever they are.
#include "plotwerk/base/bounds.h"
#include "plotwerk/files/documentFields.h"
#include "plotwerk/files/documentFile.h"
#include "tests/plotwerk/base/refusalOf.h"
#include "tests/plotwerk/files/fullDocument.h"

#include <gtest/gtest.h>

using namespace plotwerk;

// Why the bytes are refused; empty when they are read.
static std::string damageOf(const std::string &bytes) {
    return refusalOf([&] { documentOf(bytes); });
}

static std::string cbor(const std::string &item) {
    return "\xd9\xd9\xf7" + item;
}

static std::string repeated(const std::string &piece, std::size_t count = 1'000'000) {
    std::string text;
    while (count-- > 0) text += piece;
    return text;
}

// Cut, it is refused; with a byte changed it may well be another document, but nothing else.
TEST(DamagedDocument, IsRefusedWhereverItIsCutAndReadOrRefusedWithAnyByteChanged) {
    for (const bool binary : {false, true}) {
        const std::string whole = saved(smallDocument(), binary);
        for (std::size_t i = binary ? 3 : 0; i + (binary ? 0 : 1) < whole.size(); ++i) {
            ASSERT_NE(damageOf(whole.substr(0, i)), "") << "binary " << binary << " cut at " << i;
            for (const char byte : {'\0', '\x9b'}) {
                std::string damaged = whole;
                damaged[i] = byte;
                const std::string refusal = damageOf(damaged);
                ASSERT_EQ(refusal.find('\n'), std::string::npos) << refusal;
            }
        }
    }
}

TEST(DamagedDocument, ThatWouldExhaustStackOrMemoryIsRefused) {
    EXPECT_EQ(damageOf(repeated("{\"a\":")), "nested too deep");
    EXPECT_EQ(damageOf("{\"values\":[["), "something else among the numbers of a column");
    // arrays, maps, tags, chunks of text and of bytes
    for (const char *nested : {"\x81", "\xa1\x61\x61", "\xc6", "\x7f", "\x5f"})
        EXPECT_EQ(damageOf(cbor(repeated(nested))), "damaged") << nested;
    // huge lengths of bytes, text, array and map; an array without end, tags before no bytes
    for (const std::string cut :
         {"\x5b\xff\xff\xff\xff\xff\xff\xff\xff", "\x7b\x7f\xff\xff\xff\xff\xff\xff\xff",
          "\x9b\xff\xff\xff\xff\xff\xff\xff\xff", "\xbb\x80\x01\x01\x01\x01\x01\x01\x01", "\x9f",
          "\xd8\x56\x01", "\xd8\x56\x61x", "\xd8\x56", "\xd8\x57\x40", "\x1c", ""})
        EXPECT_EQ(damageOf(cbor(cut)), "damaged") << cut;
    // numbers of every length, at the end and cut
    for (const std::string whole :
         {"\x17", "\x18\x20", "\x19\x20\x20", "\x1a    ", "\x1b        "}) {
        EXPECT_EQ(damageOf(cbor(whole)), "not a document of Plotwerk") << whole.size();
        for (std::size_t length = 1; length < whole.size(); ++length)
            EXPECT_EQ(damageOf(cbor(whole.substr(0, length))), "damaged") << length;
    }
}

// A node takes 170 bytes, a number of JSON 16, bytes of CBOR one each.
TEST(DamagedDocument, MayTakeTheMemoryOfAMessage) {
    setBound("memory=10");
    const auto counted = [](std::string head, std::uint32_t count, const std::string &rest) {
        for (const int shift : {24, 16, 8, 0}) head += static_cast<char>(count >> shift);
        return cbor(head + rest);
    };
    for (const int more : {0, 1}) {
        const std::uint32_t nodes = 58'822 + more, numbers = 624'978 + more;
        const std::uint32_t text = 9'999'490 + more;
        const std::string wanted =
            more == 0 ? "not a document of Plotwerk" : "would take too much memory (limit memory)";
        EXPECT_EQ(damageOf(counted("\x9a", nodes, repeated("\x01", nodes))), wanted);
        EXPECT_EQ(damageOf(counted("\x82\x7a", text, std::string(text, 'x') + '\x01')), wanted);
        EXPECT_EQ(damageOf("[0" + repeated(",0", nodes - 1) + ']'), wanted);
        EXPECT_EQ(damageOf("{\"values\":[0" + repeated(",0", numbers - 1) + "]}"), wanted);
    }
    setBound("memory=1000");
}

// Complete items, so that nothing but their depth is wrong with the deeper ones.
TEST(DamagedDocument, NestedTooDeepIsRefused) {
    for (const std::size_t more : {0, 1}) {
        const bool fits = more == 0;
        const std::string arrays(16 + more, '\x81'), open(15 + more, '['), close(15 + more, ']');
        const std::string unknown = "not a document of Plotwerk";
        EXPECT_EQ(damageOf(cbor(arrays + '\x01')), fits ? unknown : "damaged");
        EXPECT_EQ(damageOf("{\"a\":" + open + close + '}'), fits ? unknown : "nested too deep");
    }
}

// Names of a file that would forge a line, or a terminal's command, where they are printed.
TEST(DamagedDocument, HasItsNamesInOneLine) {
    const Column column{.name = "a\tb\u202ec\u2069", .values = {}, .look = {}};
    const Document document{.name = "front\nforged \u2028",
                            .sources = {{"\x1b]0;x\x7f\u0085", {Table{column, {column}}}}},
                            .frame = {.multiDimFit = true},
                            .formula = "a = 1\na*x\x1b",
                            .parameters = {{.name = "a\nb"}},
                            .fit = {.formula = "\u2028x\r", .parameters = {{.name = "\u202e"}}}};
    for (const bool binary : {false, true}) {
        const Document read = documentOf(saved(document, binary));
        EXPECT_EQ(read.name, "front forged  ");
        EXPECT_EQ(read.sources[0].name, " ]0;x  ");
        EXPECT_EQ(read.sources[0].tables[0].x.name, "a b c ");
        EXPECT_EQ(read.sources[0].tables[0].y[0].name, "a b c ");
        EXPECT_EQ(read.formula, "a = 1\na*x ");
        EXPECT_EQ(read.parameters[0].name, "a b");
        EXPECT_EQ(read.fit.formula, " x ");
        EXPECT_EQ(read.fit.parameters[0].name, " ");
    }
}

TEST(DamagedDocument, HasTheParametersThatAFormulaAndAFitCanHave) {
    const auto damageWith = [](std::size_t count, std::size_t length, std::size_t varied,
                               std::size_t formula) {
        Document document;
        document.frame.multiDimFit = true;
        document.fit.formula = std::string(formula, 'x');
        for (auto *list : {&document.parameters, &document.fit.parameters}) {
            list->assign(count, {.name = std::string(length, 'a'), .fixed = true});
            for (std::size_t i = 0; i < varied; ++i) (*list)[i].fixed = false;
            const std::string damage = damageOf(saved(document, true));
            if (!damage.empty()) return damage;
        }
        return std::string();
    };
    EXPECT_EQ(damageWith(99, 1000, 99, 100'000), "");
    EXPECT_EQ(damageWith(50'000, 1, 500, 0), "");
    EXPECT_EQ(damageWith(0, 0, 0, 100'001), "damaged: a formula can't have more than 100000 bytes");
    EXPECT_EQ(damageWith(1, 1001, 0, 0), "damaged: a name can't have more than 1000 bytes");
    EXPECT_EQ(damageWith(50'001, 1, 0, 0), "damaged: more parameters than a formula has room for");
    EXPECT_EQ(damageWith(501, 1, 501, 0),
              "damaged: a fit can't have varied more than 500 parameters");
}

// One change to a sound text, and why it is refused then.
TEST(DamagedDocument, IsRefusedWithTheReason) {
    Document document;
    document.name = "doc";
    document.sources = {{"source", {Table{}}}};
    Table &table = document.sources[0].tables[0];
    table.x.values = {1, 2};
    table.y.resize(2);
    for (Column &y : table.y) y.values = {3, 4};
    const std::string sound = saved(document, false);
    ASSERT_EQ(damageOf(sound), "");

    const std::string longName = '"' + std::string(1001, 'n') + '"';
    const std::string longer = "damaged: a name can't have more than 1000 bytes";
    const std::string infinite = "damaged: a limit of a range can't be -inf";
    const std::string others = "something else among the numbers of a column";
    const std::string noRange = R"({"max":null,"min":null})";
    const std::string minor = std::to_string(currentVersion.minor);
    const std::string later = "saved by a later Plotwerk (version ";
    const std::string rest = '.' + minor + " of the format)";
    const struct {
        std::string key, from;
        std::vector<std::string> to;
        std::string why; // empty: of the wrong kind
    } cases[] = {
        {"format", "\"plotwerk document\"", {"\"other\"", "1"}, "not a document of Plotwerk"},
        {"version", "2", {"3"}, later + "3" + rest},
        {"version", "2", {"18446744073709551615"}, later + "18446744073709551615" + rest},
        {"version", "2", {"0", "\"2\"", "2.0"}, "damaged: no version"},
        {"minor", minor, {"-1", "null"}, "damaged: no version"},
        {"document", "", {"1,\"d\":"}, ""},
        {"name", "\"doc\"", {"null", "\"a\\u0000b\""}, ""},
        {"name", "\"doc\"", {longName}, longer},
        {"name", "\"source\"", {longName}, longer},
        {"xAxisLength", "12.0", {"\"12\"", "false"}, ""},
        {"multiDimFit", "false", {"0"}, ""},
        {"ticks", "-1", {"1.0", "2147483648", "-2147483649", "18446744073709551615"}, ""},
        {"symbol", "[0,0,0,0]", {"[0,0,0]"}, ""},
        {"symbol", "[0,0,0,0]", {"[0,16,0,0]"}, "damaged: a symbol can't be 16, only 0 to 15"},
        {"texts", "[]", {"{}"}, ""},
        {"values", "[1.0,2.0]", {"0"}, ""},
        {"values", "[1.0,2.0]", {"[1.0]"}, "damaged: columns of unequal length in \"source\""},
        {"values", "[1.0,2.0]", {"[1.0,\"2\"]"}, "a text among the numbers of a column"},
        {"values", "[1.0,2.0]", {"[[2.0]]", "[1.0,true]", "[{}]"}, others},
        {"lineThickness", "1.0", {"null"}, "damaged: lineThickness can't be nan, only 0 to 50"},
        {"layer", "0", {"2147483647"}, "damaged: layer can't be 2.14748e+09"},
        {"opacity", "1.0", {"-1"}, "damaged: a part of a colour can't be -1, only 0 to 1"},
        {"logTicksAt", "-1", {"0"}, "damaged: logticksAt can't be 0, only 1 to 600"},
        {"range", noRange, {R"({"max":1,"min":"-inf"})"}, infinite},
        {"fitRange", noRange, {R"({"max":1,"min":2})"}, "damaged: a range can't go from 2 to 1"},
        {"formula", "\"\"", {"\"(\""}, "damaged: formula, line 1, column 2: expected a value"},
        {"formula", "\"\"", {"\"a*x\""}, "damaged: the parameters are not those of the formula"}};
    for (const auto &c : cases) {
        const std::string key = '"' + c.key + '"';
        const std::size_t at =
            sound.rfind(key + ':' + c.from); // of looks the last, that of a curve
        ASSERT_NE(at, std::string::npos) << key << c.from;
        for (const std::string &to : c.to) {
            std::string damaged = sound;
            damaged.replace(at + key.size() + 1, c.from.size(), to);
            const std::string why = "damaged: " + key + " is of the wrong kind";
            EXPECT_EQ(damageOf(damaged), c.why.empty() ? why : c.why) << key << to;
        }
        std::string without = sound;
        without[at + 1] = 'Z';
        const bool needed = c.key != "format" && c.key != "minor";
        EXPECT_EQ(damageOf(without).starts_with("damaged: no "), needed) << key;
    }

    const auto refusalWith = [&](const Column &y) {
        table.y = {y, y};
        return damageOf(saved(document, true));
    };
    Column placed{.name = "", .values = {3, 4}, .look = {}}, fitted = placed, drawn = placed;
    placed.rank = 1;
    EXPECT_EQ(refusalWith(placed), "damaged: the selection has two curves in one place");
    placed.rank = -1;
    EXPECT_EQ(refusalWith(placed), "damaged: place can't be -1");
    fitted.fitData = drawn.drawnByFit = true;
    EXPECT_EQ(refusalWith(fitted), "damaged: more than one curve is the fit data");
    EXPECT_EQ(refusalWith(drawn), "damaged: more than one curve is drawn by the fit");
    document.parameters = {{.name = "a", .bounds = {2, 1}}};
    EXPECT_EQ(damageOf(saved(document, true)), "damaged: a range can't go from 2 to 1");
    document.parameters.clear();

    // a text of JSON is checked by its parser, one of CBOR by nobody else
    document.name = "q\u00e4";
    for (const bool binary : {false, true}) {
        std::string bytes = saved(document, binary);
        bytes.replace(bytes.find("\u00e4"), 2, "\xe4\xe4");
        EXPECT_NE(damageOf(bytes).find("damaged"), std::string::npos) << "binary " << binary;
    }
}
