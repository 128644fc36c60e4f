#include "plotwerk/base/bounds.h"

#include "plotwerk/base/refusal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace plotwerk {

namespace {

enum { seconds, memory, documents, answer, unread, boundCount };

std::array<Bound, boundCount> table = {{
    {"seconds", "CPU time of one message, in seconds", 10, 1, 1e6},
    {"memory", "memory that one message takes beyond what is held, in MB", 1000, 10, 1e6},
    {"documents", "memory of all documents, the composition and the clipboard, in MB", 2000, 1,
     1e6},
    // the bus takes messages of up to 128 MiB, and cuts off who sends a longer one
    {"answer", "length of one answer, in MB", 120, 1, 120},
    // of 1000 MB that a bus holds back for all it reads nothing more from the one who sends
    {"unread", "answers that one client leaves unread, in MB", 200, 1, 600},
}};

constexpr double megabyte = 1e6;

std::function<double()> bytesHeld;
bool asDocuments = false; // memory is that of all open documents

} // namespace

static std::string plainly(double value) {
    return std::to_string(static_cast<int>(value));
}

std::span<const Bound> bounds() {
    return table;
}

void setBound(std::string_view assignment) {
    const std::size_t length = assignment.find('=');
    const std::string name(assignment.substr(0, length));
    const auto bound = std::ranges::find(table, name, &Bound::name);
    if (bound == table.end()) throw Refusal("no limit is called \"" + name + '"');
    if (length == assignment.npos)
        throw Refusal("the limit " + name + " needs a value: " + name + "=NUMBER");
    const std::string text(assignment.substr(length + 1));
    const char *end = text.data() + text.size();
    double value = 0;
    const auto [after, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || after != end || !(value >= bound->least) || !(value <= bound->most))
        throw Refusal("the limit " + name + " can't be \"" + text + "\", only " +
                      plainly(bound->least) + " to " + plainly(bound->most));
    bound->value = value;
}

double mostSeconds() {
    return table[seconds].value;
}

double mostMemory() {
    return table[memory].value * megabyte;
}

double longestAnswer() {
    return table[answer].value * megabyte;
}

void requireAnswer(std::string_view text) {
    if (static_cast<double>(text.size()) > longestAnswer())
        throw Refusal("the answer would be too long (limit answer)");
}

double mostUnread() {
    return table[unread].value * megabyte;
}

WithMemoryOfDocuments::WithMemoryOfDocuments() : before(std::exchange(asDocuments, true)) {
}

WithMemoryOfDocuments::~WithMemoryOfDocuments() {
    asDocuments = before;
}

void setBytesHeld(std::function<double()> count) {
    bytesHeld = std::move(count);
}

void requireTime(double nanoseconds) {
    if (!(nanoseconds <= mostSeconds() * 1e9)) throw Refusal("would take too long (limit seconds)");
}

void requireMemory(double bytes) {
    const double ofDocuments = asDocuments ? table[documents].value * megabyte : 0;
    if (!(bytes <= std::max(mostMemory(), ofDocuments)))
        throw Refusal("would take too much memory (limit memory)");
}

void requireRoom(double bytes) {
    requireMemory(bytes);
    if (!bytesHeld) return;
    if (!(bytesHeld() + bytes <= table[documents].value * megabyte))
        throw Refusal("the open documents would take too much memory (limit documents)");
}

} // namespace plotwerk
