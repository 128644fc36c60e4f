// Bytes that are no document are refused, whatever they are.
#include "plotwerk/files/documentFile.h"
#include "plotwerk/refusal.h"
#include "tests/plotwerk/fullDocument.h"

#include <gtest/gtest.h>
#include <sstream>

using namespace plotwerk;

// Why the bytes are refused; empty when they are read.
static std::string refusalOf(const std::string &bytes) {
    try {
        documentOf(bytes);
        return "";
    } catch (const Refusal &refusal) {
        return refusal.what();
    }
}

static std::string saved(const Document &document, bool binary) {
    std::ostringstream stream;
    writeDocument(stream, document, binary);
    return stream.str();
}

static std::string repeated(const std::string &piece, size_t count) {
    std::string text;
    text.reserve(piece.size() * count);
    while (count-- > 0) text += piece;
    return text;
}

TEST(DamagedDocument, IsRefusedWhereverItIsCut) {
    const std::string json = saved(smallDocument(), false);
    for (size_t length = 0; length < json.rfind('}'); ++length) {
        ASSERT_NE(refusalOf(json.substr(0, length)), "") << "JSON cut at " << length;
    }
    const std::string cbor = saved(smallDocument(), true);
    for (size_t length = 3; length < cbor.size(); ++length) {
        ASSERT_NE(refusalOf(cbor.substr(0, length)), "") << "CBOR cut at " << length;
    }
}

// A changed byte may well give another document; it must not give anything else.
TEST(DamagedDocument, IsReadOrRefusedWithAnyByteChanged) {
    for (const bool binary : {false, true}) {
        const std::string whole = saved(smallDocument(), binary);
        for (size_t i = binary ? 3 : 0; i < whole.size(); ++i) {
            for (const char byte : {'\0', '\x7f', '\x9b', '\xff'}) {
                std::string damaged = whole;
                damaged[i] = byte;
                const std::string refusal = refusalOf(damaged);
                ASSERT_EQ(refusal.find('\n'), std::string::npos) << refusal;
            }
        }
    }
}

TEST(DamagedDocument, ThatWouldExhaustStackOrMemoryIsRefused) {
    const std::string mark = "\xd9\xd9\xf7";
    const struct {
        const char *what;
        std::string bytes;
    } cases[] = {
        {"nested arrays", repeated("[", 3'000'000)},
        {"nested objects", repeated("{\"a\":", 3'000'000)},
        {"nested numbers of a column", "{\"values\":" + repeated("[", 3'000'000)},
        {"nested CBOR arrays", mark + repeated("\x81", 3'000'000)},
        {"nested CBOR maps", mark + repeated("\xa1\x61\x61", 3'000'000)},
        {"nested CBOR tags", mark + repeated("\xc6", 3'000'000)},
        {"nested CBOR text chunks", mark + repeated("\x7f", 3'000'000)},
        {"nested CBOR byte chunks", mark + repeated("\x5f", 3'000'000)},
        {"CBOR array without end", mark + "\x9f"},
        {"huge CBOR bytes", mark + "\x5b\xff\xff\xff\xff\xff\xff\xff\xff"},
        {"huge CBOR text", mark + "\x7b\x7f\xff\xff\xff\xff\xff\xff\xff"},
        {"huge CBOR array", mark + "\x9b\xff\xff\xff\xff\xff\xff\xff\xff"},
        {"huge CBOR map", mark + "\xbb\x80" + std::string(8, '\0')},
        {"tag before a number", mark + "\xd8\x56\x01"},
        {"tag at the end", mark + "\xd8\x56"},
        {"nothing behind the mark", mark},
    };
    for (const auto &c : cases) EXPECT_NE(refusalOf(c.bytes), "") << c.what;
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
    ASSERT_EQ(refusalOf(sound), "");

    const struct {
        const char *from, *to, *why;
    } cases[] = {
        {"\"plotwerk document\"", "\"other\"", "not a document of Plotwerk"},
        {"\"plotwerk document\"", "1", "not a document of Plotwerk"},
        {"\"version\":1", "\"version\":2", "saved by a later Plotwerk (version 2 of the format)"},
        {"\"version\":1", "\"version\":18446744073709551615",
         "saved by a later Plotwerk (version 18446744073709551615 of the format)"},
        {"\"version\":1", "\"version\":0", "damaged: no version"},
        {"\"version\":1", "\"version\":\"1\"", "damaged: no version"},
        {"\"version\":1", "\"v\":1", "damaged: no version"},
        {"\"document\":", "\"documents\":", "damaged: no \"document\""},
        {"\"name\":\"doc\"", "\"name\":null", "damaged: \"name\" is of the wrong kind"},
        {"\"name\":\"doc\"", "\"name\":\"a\\u0000b\"", "damaged: \"name\" is of the wrong kind"},
        {"\"xAxisLength\":12.0", "\"xAxisLength\":\"12\"",
         "damaged: \"xAxisLength\" is of the wrong kind"},
        {"\"xAxisLength\":12.0", "\"xAxisLength\":false",
         "damaged: \"xAxisLength\" is of the wrong kind"},
        {"\"multiDimFit\":false", "\"multiDimFit\":0",
         "damaged: \"multiDimFit\" is of the wrong kind"},
        {"\"ticks\":-1", "\"ticks\":1.0", "damaged: \"ticks\" is of the wrong kind"},
        {"\"ticks\":-1", "\"ticks\":2147483648", "damaged: \"ticks\" is of the wrong kind"},
        {"\"ticks\":-1", "\"ticks\":-2147483649", "damaged: \"ticks\" is of the wrong kind"},
        {"\"ticks\":-1", "\"ticks\":18446744073709551615",
         "damaged: \"ticks\" is of the wrong kind"},
        {"\"symbol\":[0,0,0,0]", "\"symbol\":[0,0,0]", "damaged: \"symbol\" is of the wrong kind"},
        {"\"texts\":[]", "\"texts\":{}", "damaged: \"texts\" is of the wrong kind"},
        {"\"frame\":{", "\"frame\":[],\"f\":{", "damaged: \"frame\" is of the wrong kind"},
        {"\"values\":[1.0,2.0]", "\"values\":0", "damaged: \"values\" is of the wrong kind"},
        {"\"values\":[1.0,2.0]", "\"values\":[1.0]",
         "damaged: columns of unequal length in \"source\""},
        {"\"values\":[1.0,2.0]", "\"values\":[1.0,\"2\"]", "a text among the numbers of a column"},
        {"\"values\":[1.0,2.0]", "\"values\":[1.0,[2.0]]",
         "something else among the numbers of a column"},
        {"\"values\":[1.0,2.0]", "\"values\":[1.0,true]",
         "something else among the numbers of a column"},
        {"\"markWalk\":0", "\"markWalk\":-1", "damaged: \"markWalk\" is negative"},
        {"\"formula\":\"\"", "\"formula\":\"(\"",
         "damaged: formula, line 1, column 2: expected a value"},
        {"\"formula\":\"\"", "\"formula\":\"a*x\"",
         "damaged: the parameters are not those of the formula"},
    };
    for (const auto &c : cases) {
        std::string damaged = sound;
        const size_t at = damaged.find(c.from);
        ASSERT_NE(at, std::string::npos) << c.from;
        damaged.replace(at, std::string(c.from).size(), c.to);
        EXPECT_EQ(refusalOf(damaged), c.why) << c.to;
    }

    table.y[0].place = -1;
    EXPECT_EQ(refusalOf(saved(document, true)), "damaged: \"place\" is negative");
    for (Column &y : table.y) y.place = 1;
    EXPECT_EQ(refusalOf(saved(document, true)),
              "damaged: the selection has two curves in one place");
    for (Column &y : table.y) y = {.name = "", .values = {3, 4}, .look = {}, .fitData = true};
    EXPECT_EQ(refusalOf(saved(document, true)), "damaged: more than one curve is the fit data");
    for (Column &y : table.y) {
        y.fitData = false;
        y.drawnByFit = true;
    }
    EXPECT_EQ(refusalOf(saved(document, true)), "damaged: more than one curve is drawn by the fit");
}

// A text of JSON is checked by its parser, one of CBOR by nobody else.
TEST(DamagedDocument, WithTextThatIsNotUtf8IsRefused) {
    Document document;
    document.name = "doc";
    for (const bool binary : {false, true}) {
        std::string bytes = saved(document, binary);
        bytes.replace(bytes.find("doc"), 3, "d\xffg");
        EXPECT_NE(refusalOf(bytes), "") << "binary " << binary;
    }
}

TEST(SoundDocument, MayBeWrittenByHand) {
    Document document;
    std::string text = saved(document, false);
    text.replace(text.find("\"xAxisLength\":12.0"), 18, "\"new\" : [ {} ],\n \"xAxisLength\" : 12");
    EXPECT_EQ(linesOf(documentOf("\xef\xbb\xbf\n" + text)), linesOf(document));
}
