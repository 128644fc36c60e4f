// utf8.h - bytes from outside as UTF-8 text that the message bus carries.
//
// The bus refuses zero bytes, surrogates and Unicode's non-characters (U+FDD0 to U+FDEF, U+xxFFFE,
// U+xxFFFF); a text with one of them counts as no UTF-8.
#ifndef PLW_UTIL_TEXT_UTF8_H
#define PLW_UTIL_TEXT_UTF8_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace plw {

// The code point that begins the text, and in *length its bytes. *length is 0 where no UTF-8 that
// the bus carries begins, and for an empty text.
std::uint32_t firstCodePoint(std::string_view text, std::size_t *length);

// Whether Unicode keeps the code point for no character: U+FDD0 to U+FDEF, U+xxFFFE, U+xxFFFF.
bool isNonCharacter(std::uint32_t code);

// Whether a byte of UTF-8 begins no character but goes on with one.
constexpr bool isContinuation(char c) {
    return (c & 0xc0) == 0x80;
}

// The text up to where its second character begins; empty for an empty text.
//   "aä" -> "a"   "äa" -> "ä"
std::string_view firstCharacter(std::string_view text);

// Whether the whole text is UTF-8 that the bus carries. The empty text is.
bool isUtf8(std::string_view text);

// The text itself when it is UTF-8 that the bus carries; otherwise its bytes read as ISO 8859-1,
// without the zero bytes.
//   "\xc3\xa4" -> "\xc3\xa4"   "\xe4" -> "\xc3\xa4"   "a\0b" -> "ab"
std::string utf8Of(std::string text);

// Length of the longest prefix of the text that has at most `longest` bytes and doesn't end inside
// a character; `longest` itself where no character of UTF-8 can reach across it.
//   "aä" (3 bytes): 3 -> 3   2 -> 1   1 -> 1
std::size_t prefixOfCharacters(std::string_view text, std::size_t longest);

} // namespace plw

#endif
