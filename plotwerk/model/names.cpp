#include "plotwerk/model/names.h"

#include "plotwerk/base/characters.h"
#include "plotwerk/base/refusal.h"
#include "util/files/uniqueName.h"
#include "util/text/utf8.h"

#include <algorithm>
#include <utility>

namespace plotwerk {

// Calls visit(begin, length) for every character of the text that a name can't have.
template<class Visit> static void visitControls(std::string_view text, Visit visit) {
    std::size_t length = 0;
    for (std::size_t at = 0; at < text.size(); at += std::max<std::size_t>(length, 1)) {
        const std::uint32_t code = plw::firstCodePoint(text.substr(at), &length);
        if (length > 0 && (isControl(code) || turnsDirection(code))) visit(at, length);
    }
}

void requireName(std::string_view text) {
    if (text.size() > longestName)
        throw Refusal("a name can't have more than " + std::to_string(longestName) + " bytes");
    visitControls(text, [](std::size_t, std::size_t) {
        throw Refusal("a name can't have control characters, line ends or turns of direction");
    });
}

static std::string withoutControls(std::string text, std::string_view kept) {
    std::string seen;
    std::size_t end = 0;
    visitControls(text, [&](std::size_t at, std::size_t length) {
        if (kept.find(text[at]) != std::string_view::npos) return;
        seen.append(text, end, at - end) += ' ';
        end = at + length;
    });
    return end == 0 ? text : seen.append(text, end);
}

std::string nameOf(std::string text) {
    return withoutControls(std::move(text), "");
}

std::string formulaOf(std::string text) {
    return withoutControls(std::move(text), "\n\t");
}

static int timesNamed = 0;

int namesOfTheTime() {
    return timesNamed;
}

std::string freeName(const std::string &name, const std::vector<std::string> &taken) {
    std::vector<const char *> names;
    names.reserve(taken.size());
    for (const std::string &each : taken) names.push_back(each.c_str());
    std::string free;
    do {
        // room for " hh:mm:ss#" and the counter; the counter's name isn't compared, but the next is
        // another
        free = name;
        free.resize(name.size() + 32);
        plw::uniqueName(free.data(), names.data(), static_cast<int>(names.size()));
        free.resize(std::char_traits<char>::length(free.c_str()));
    } while (std::find(taken.begin(), taken.end(), free) != taken.end());
    if (free == name) return free;
    requireName(free);
    ++timesNamed;
    return free;
}

} // namespace plotwerk
