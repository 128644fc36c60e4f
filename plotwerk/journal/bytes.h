// bytes.h - numbers and texts one after the other in bytes, for this machine alone.
#ifndef PLOTWERK_JOURNAL_BYTES_H
#define PLOTWERK_JOURNAL_BYTES_H

#include "plotwerk/base/refusal.h"

#include <boost/container/small_vector.hpp>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace plotwerk {

template<class Bytes, class T> void putNumber(Bytes &bytes, T number) {
    static_assert(std::is_arithmetic_v<T>);
    char raw[sizeof number];
    std::memcpy(raw, &number, sizeof number);
    bytes.insert(bytes.end(), std::begin(raw), std::end(raw));
}

template<class Bytes> void putText(Bytes &bytes, std::string_view text) {
    putNumber(bytes, static_cast<std::uint64_t>(text.size()));
    bytes.insert(bytes.end(), text.begin(), text.end());
}

// Bytes in pieces: long texts aren't copied, but referred to, and must outlive it.
class GatheredBytes {
  public:
    template<class T> void putNumber(T number) { plotwerk::putNumber(held, number); }
    void putText(std::string_view text) {
        constexpr std::size_t longText = 4096;
        if (text.size() < longText) return plotwerk::putText(held, text);
        putNumber(static_cast<std::uint64_t>(text.size()));
        referred.push_back({held.size(), text});
    }

    // The same, with a copy of the text whatever its length.
    void putCopy(std::string_view text) { plotwerk::putText(held, text); }

    std::vector<std::string_view> pieces() const {
        std::vector<std::string_view> all;
        all.reserve(2 * referred.size() + 1);
        const char *begin = held.data();
        for (const Referred &each : referred) {
            const char *end = held.data() + each.position;
            all.emplace_back(begin, end);
            all.push_back(each.text);
            begin = end;
        }
        all.emplace_back(begin, held.data() + held.size());
        return all;
    }
    std::string whole() const {
        std::string bytes;
        for (const std::string_view piece : pieces()) bytes += piece;
        return bytes;
    }

  private:
    struct Referred {
        std::size_t position; // in `held`
        std::string_view text;
    };
    boost::container::small_vector<char, 256> held; // enough for most messages
    std::vector<Referred> referred;
};

// Takes apart what was put; the bytes must outlive it. Throws Refusal "damaged: cut off".
class ByteReader {
  public:
    explicit ByteReader(std::string_view bytes) : left(bytes) {}

    template<class T> T number() {
        T number;
        std::memcpy(&number, taken(sizeof number).data(), sizeof number);
        return number;
    }
    std::string_view text() { return taken(number<std::uint64_t>()); }
    std::string_view taken(std::uint64_t count) {
        if (count > left.size()) throw Refusal("damaged: cut off");
        const std::string_view bytes = left.substr(0, count);
        left.remove_prefix(count);
        return bytes;
    }
    std::string_view rest() const { return left; }

  private:
    std::string_view left;
};

} // namespace plotwerk

#endif
