#include "plotwerk/data/remarks.h"

#include "plotwerk/base/log.h"

namespace plotwerk {

static constexpr std::size_t mostNamed = 8;

std::string inQuotes(std::string_view text) {
    std::string result(1, '"');
    return result.append(text).append("\"");
}

void Remarks::addWords(std::size_t count, const std::string &first) {
    if (words == 0) firstWord = first;
    words += count;
}

void Remarks::write() const {
    if (leftOut.count > 0)
        log(LogLevel::warning, "data text: left out, since they hold words: " + textOf(leftOut));
    if (mixed.count > 0)
        log(LogLevel::warning, "data text: both times and numbers in " + textOf(mixed));
    if (words > 0)
        log(LogLevel::warning, "data text: " + std::to_string(words) +
                                   (words == 1 ? " word" : " words") +
                                   " read as missing values, the first is " + firstWord);
}

void Remarks::addTo(List &list, const std::string &column) {
    if (list.count++ >= mostNamed) return;
    list.text.append(list.text.empty() ? "" : ", ").append(column);
}

std::string Remarks::textOf(const List &list) {
    if (list.count <= mostNamed) return list.text;
    return list.text + " and " + std::to_string(list.count - mostNamed) + " more";
}

} // namespace plotwerk
