#include "plotwerk/files/treeWriter.h"

#include "plotwerk/files/documentTree.h"
#include "util/text/utf8.h"

#include <bit>
#include <cmath>
#include <limits>

namespace plotwerk {

enum Kind : unsigned { wholeNumber, negativeNumber, byteString, text, array, map, tag, simple };

// Big-endian, as CBOR has them.
template<class Number> void TreeWriter::append(Number bits) {
    for (int shift = 8 * sizeof bits - 8; shift >= 0; shift -= 8)
        pending += static_cast<char>(bits >> shift);
}

void TreeWriter::flush() {
    stream.write(pending.data(), static_cast<std::streamsize>(pending.size()));
    pending.clear();
}

void TreeWriter::makeRoom() {
    constexpr std::size_t part = 1 << 16;
    if (pending.size() >= part) flush();
}

void TreeWriter::separate() {
    makeRoom();
    if (!binary && !first) pending += ',';
    first = false;
}

void TreeWriter::head(unsigned kind, std::uint64_t argument) {
    const auto begin = [&](unsigned low) { pending += static_cast<char>(kind << 5 | low); };
    if (argument < 24) {
        begin(static_cast<unsigned>(argument));
    } else if (argument <= UINT8_MAX) {
        begin(24);
        append(static_cast<std::uint8_t>(argument));
    } else if (argument <= UINT16_MAX) {
        begin(25);
        append(static_cast<std::uint16_t>(argument));
    } else if (argument <= UINT32_MAX) {
        begin(26);
        append(static_cast<std::uint32_t>(argument));
    } else {
        begin(27);
        append(argument);
    }
}

void TreeWriter::beginRecord(std::size_t count) {
    separate();
    if (binary)
        head(map, count);
    else
        pending += '{';
    first = true;
}

void TreeWriter::beginArray(std::size_t count) {
    separate();
    if (binary)
        head(array, count);
    else
        pending += '[';
    first = true;
}

void TreeWriter::end(char bracket) {
    if (!binary) pending += bracket;
    first = false;
}

void TreeWriter::key(std::string_view name) {
    separate();
    if (binary) {
        head(text, name.size());
        pending += name;
    } else {
        pending.append("\"").append(name).append("\":");
    }
    first = true;
}

void TreeWriter::write(bool value) {
    separate();
    if (binary)
        head(simple, value ? 21 : 20);
    else
        pending += value ? "true" : "false";
}

void TreeWriter::write(int value) {
    separate();
    if (!binary)
        pending += std::to_string(value);
    else if (value < 0)
        head(negativeNumber, static_cast<std::uint64_t>(-1 - static_cast<std::int64_t>(value)));
    else
        head(wholeNumber, static_cast<std::uint64_t>(value));
}

void TreeWriter::write(std::uint64_t value) {
    separate();
    if (binary)
        head(wholeNumber, value);
    else
        pending += std::to_string(value);
}

// In half precision what isn't finite, in single precision what that holds.
void TreeWriter::appendCbor(double value) {
    const auto narrow = static_cast<float>(std::isfinite(value) ? value : 0);
    if (std::isnan(value)) {
        pending += "\xf9\x7e";
        pending += '\0';
    } else if (std::isinf(value)) {
        pending += value > 0 ? "\xf9\x7c" : "\xf9\xfc";
        pending += '\0';
    } else if (static_cast<double>(narrow) == value) {
        pending += '\xfa';
        append(std::bit_cast<std::uint32_t>(narrow));
    } else {
        pending += '\xfb';
        append(std::bit_cast<std::uint64_t>(value));
    }
}

void TreeWriter::appendJson(double value) {
    if (std::isnan(value)) {
        pending += "null";
    } else if (std::isinf(value)) {
        pending += '"';
        pending += value > 0 ? plusInfinity : minusInfinity;
        pending += '"';
    } else {
        char digits[64];
        pending.append(digits, nlohmann::detail::to_chars(digits, digits + sizeof digits, value));
    }
}

void TreeWriter::write(double value) {
    separate();
    if (binary)
        appendCbor(value);
    else
        appendJson(value);
}

void TreeWriter::write(const std::string &value) {
    separate();
    const std::string utf8 = plw::utf8Of(value);
    if (binary) {
        head(text, utf8.size());
        pending += utf8;
    } else {
        pending += Tree(utf8).dump();
    }
}

void TreeWriter::write(const std::vector<double> &values) {
    if (!binary) {
        beginArray(values.size());
        for (const double value : values) write(value);
        endArray();
        return;
    }
    separate();
    head(tag, doublesTag);
    head(byteString, values.size() * sizeof(double));
    static_assert(std::endian::native == std::endian::little, "doublesTag says so");
    const std::string_view bytes(reinterpret_cast<const char *>(values.data()),
                                 values.size() * sizeof(double));
    constexpr std::size_t few = 1 << 12;
    if (bytes.size() <= few) {
        pending += bytes;
        return;
    }
    flush();
    // In parts, since a signal is heard only between two writes.
    constexpr std::size_t part = 1 << 20;
    for (std::size_t i = 0; i < bytes.size(); i += part) {
        const std::string_view some = bytes.substr(i, part);
        stream.write(some.data(), static_cast<std::streamsize>(some.size()));
    }
}

} // namespace plotwerk
