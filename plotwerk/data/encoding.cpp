#include "plotwerk/data/encoding.h"

#include "plotwerk/base/refusal.h"
#include "util/text/utf8.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace plotwerk {

static constexpr std::string_view replacement = "\xEF\xBF\xBD"; // U+FFFD

static void appendUtf8(std::uint32_t code, std::string &text) {
    const auto byte = [&](std::uint32_t value) { text += static_cast<char>(value); };
    if (plw::isNonCharacter(code) || (code >= 0xd800 && code <= 0xdfff)) {
        text += replacement;
    } else if (code < 0x80) {
        byte(code);
    } else if (code < 0x800) {
        byte(0xc0 | code >> 6);
        byte(0x80 | (code & 0x3f));
    } else {
        if (code < 0x10000) {
            byte(0xe0 | code >> 12);
        } else {
            byte(0xf0 | code >> 18);
            byte(0x80 | (code >> 12 & 0x3f));
        }
        byte(0x80 | (code >> 6 & 0x3f));
        byte(0x80 | (code & 0x3f));
    }
}

// Of UTF-16: a unit of two bytes becomes three at most.
static std::size_t longestUtf8Of(std::size_t bytes) {
    return bytes / 2 * 3;
}

// An odd last byte is left out.
static std::string utf8OfUtf16(std::string_view bytes, bool littleEndian) {
    const auto unit = [&](std::size_t i) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto second = static_cast<unsigned char>(bytes[i + 1]);
        return static_cast<std::uint32_t>(littleEndian ? second << 8 | first : first << 8 | second);
    };
    std::string text;
    text.reserve(longestUtf8Of(bytes.size()));
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        std::uint32_t code = unit(i);
        if (code >= 0xd800 && code < 0xdc00 && i + 3 < bytes.size()) {
            const std::uint32_t low = unit(i + 2);
            if (low >= 0xdc00 && low <= 0xdfff) {
                code = 0x10000 + ((code - 0xd800) << 10) + (low - 0xdc00);
                i += 2;
            }
        }
        appendUtf8(code, text);
    }
    return text;
}

// The length of the noncharacter that the text begins with, in UTF-8; 0 for anything else.
static std::size_t noncharacterAt(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const auto follows = [&](std::size_t i) { return plw::isContinuation(text[i]); };
    if (text.size() >= 3 && byte(0) == 0xef && follows(1) && follows(2))
        return plw::isNonCharacter(0xf000U | (byte(1) & 0x3fU) << 6 | (byte(2) & 0x3fU)) ? 3 : 0;
    if (text.size() < 4 || byte(0) < 0xf0 || byte(0) > 0xf4) return 0;
    if (!follows(1) || !follows(2) || !follows(3)) return 0;
    const std::uint32_t code =
        (byte(0) & 7U) << 18 | (byte(1) & 0x3fU) << 12 | (byte(2) & 0x3fU) << 6 | (byte(3) & 0x3fU);
    return code >= 0x10000 && code <= 0x10ffff && plw::isNonCharacter(code) ? 4 : 0;
}

// In place: none of them is shorter than what replaces it.
static void replaceNoncharacters(std::string &text) {
    std::size_t kept = 0;
    for (std::size_t at = 0; at < text.size();) {
        const auto lead = static_cast<unsigned char>(text[at]);
        const std::size_t length =
            lead < 0xef ? 0 : noncharacterAt(std::string_view(text).substr(at));
        if (length == 0) {
            text[kept++] = text[at++];
            continue;
        }
        kept += replacement.copy(&text[kept], replacement.size());
        at += length;
    }
    text.resize(kept);
}

// For the bytes, and what is made of them while they are there.
static void requireConversion(std::size_t bytes, std::size_t most, ReadingTime &time) {
    time.addConversion(bytes);
    requireMemory(static_cast<double>(bytes) + static_cast<double>(most));
}

std::string textOfFile(std::string bytes, ReadingTime &time) {
    const std::string_view mark = std::string_view(bytes).substr(0, 2);
    const bool isUtf16 = mark == "\xFF\xFE" || mark == "\xFE\xFF";
    if (isUtf16) {
        requireConversion(bytes.size(), longestUtf8Of(bytes.size()), time);
        bytes = utf8OfUtf16(std::string_view(bytes).substr(2), mark == "\xFF\xFE");
    }
    if (bytes.find('\0') != std::string::npos)
        throw Refusal("neither a saved document nor data text");
    if (!isUtf16 && bytes.starts_with(byteOrderMark)) bytes.erase(0, byteOrderMark.size());
    if (plw::isUtf8(bytes)) return bytes;

    time.addConversion(bytes.size());
    replaceNoncharacters(bytes);
    const auto beyondAscii =
        std::count_if(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; });
    if (!plw::isUtf8(bytes))
        requireConversion(bytes.size(), bytes.size() + static_cast<std::size_t>(beyondAscii), time);
    return plw::utf8Of(std::move(bytes));
}

} // namespace plotwerk
