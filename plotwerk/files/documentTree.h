// documentTree.h - the tree of keys and values that stands between a document and its file.
#ifndef PLOTWERK_FILES_DOCUMENTTREE_H
#define PLOTWERK_FILES_DOCUMENTTREE_H

#include <bit>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace plotwerk {

using Tree = nlohmann::json;

// Owns a tree. By itself one needs memory to be destroyed, and ends the process where it finds
// none.
struct WholeTree {
    WholeTree() = default;
    WholeTree(WholeTree &&) = default;
    ~WholeTree();

    Tree root;
};

// The key of a column's numbers. Under it a tree holds bytes, eight per number, lowest first, so
// that a million numbers don't become a million nodes. CBOR knows such bytes by this tag.
constexpr std::string_view valuesKey = "values";
constexpr std::uint8_t doublesTag = 86;

// A number takes eight bytes.
inline void appendDouble(Tree::binary_t::container_type &bytes, double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    for (int shift = 0; shift < 64; shift += 8) {
        bytes.push_back(static_cast<std::uint8_t>(bits >> shift));
    }
}

inline double doubleAt(const std::uint8_t *bytes) {
    std::uint64_t bits = 0;
    for (int i = 7; i >= 0; --i) bits = bits << 8 | bytes[i];
    return std::bit_cast<double>(bits);
}

// JSON has no infinities: these texts stand for them, and null for NaN.
constexpr std::string_view plusInfinity = "inf";
constexpr std::string_view minusInfinity = "-inf";

// The tree in a JSON text, or in CBOR behind its mark.
// Throws Refusal: cut or damaged bytes, nested beyond what a document is.
WholeTree treeOfJson(const std::string &text);
WholeTree treeOfCbor(std::string_view bytes);

// CBOR's mark: the tag that says "what follows is CBOR".
constexpr std::string_view cborMark = "\xd9\xd9\xf7";

} // namespace plotwerk

#endif
