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
    write(leftOut, "left out, since they hold words: ");
    write(mixed, "both times and numbers in ");
    write(unnamed, "more columns than names, without one: ");
    write(unusedNames, "more names than columns, not used: ");
    write(linesOfWords, "of words below the first row passed over");
    write(unreadRows, "with a leading number taken for words above the rows");
    if (words > 0)
        log(LogLevel::warning, "data text: " + std::to_string(words) +
                                   (words == 1 ? " word" : " words") +
                                   " read as missing values, the first is " + firstWord);
}

void Remarks::addTo(List &list, const std::string &column) {
    if (list.count++ >= mostNamed) return;
    list.text.append(list.text.empty() ? "" : ", ").append(column);
}

void Remarks::write(const List &list, const char *what) {
    if (list.count == 0) return;
    std::string text = "data text: " + (what + list.text);
    if (list.count > mostNamed) text += " and " + std::to_string(list.count - mostNamed) + " more";
    log(LogLevel::warning, text);
}

void Remarks::write(const LineCount &lines, const char *what) {
    if (lines.count == 0) return;
    log(LogLevel::warning, "data text: " + std::to_string(lines.count) +
                               (lines.count == 1 ? " line " : " lines ") + what +
                               ", the first is line " + std::to_string(lines.first));
}

} // namespace plotwerk
