#include "plotwerk/window/journalPane.h"

#include <algorithm>
#include <utility>

namespace plotwerk {

JournalPane::JournalPane()
    : endMark(view.get_buffer()->create_mark(view.get_buffer()->end(), false)) {
    view.set_editable(false);
    view.set_cursor_visible(false);
    view.set_monospace();
    view.set_left_margin(8);
    view.set_right_margin(8);
    view.set_top_margin(4);
    view.set_bottom_margin(4);
    gtk_accessible_update_property(GTK_ACCESSIBLE(view.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   "Journal", -1);
    set_child(view);
    signal_map().connect([this] { showAll(); });
    set_min_content_height(96);
}

static std::size_t rowsOf(const MessageLine &line) {
    return static_cast<std::size_t>(std::count(line.text.begin(), line.text.end(), '\n')) + 1;
}

void JournalPane::insert(const MessageLine &line) {
    lines.push_back(line);
    if (!get_mapped()) return;
    const auto buffer = view.get_buffer();
    buffer->insert(buffer->end(), line.text + '\n');
    view.scroll_to(endMark);
}

// While it isn't shown there is no text to keep.
void JournalPane::showAll() {
    std::string text;
    for (const MessageLine &line : lines) text += line.text + '\n';
    view.get_buffer()->set_text(text);
    view.scroll_to(endMark);
}

void JournalPane::eraseText(std::size_t from, std::size_t count) {
    const auto buffer = view.get_buffer();
    std::size_t row = 0;
    for (std::size_t i = 0; i < from; ++i) row += rowsOf(lines[i]);
    std::size_t last = row;
    for (std::size_t i = from; i < from + count; ++i) last += rowsOf(lines[i]);
    auto begin = buffer->get_iter_at_line(static_cast<int>(row));
    auto end = buffer->get_iter_at_line(static_cast<int>(last));
    buffer->erase(begin, end);
}

void JournalPane::erase(std::size_t from, std::size_t count) {
    if (get_mapped()) eraseText(from, count);
    const auto first = lines.begin() + static_cast<std::ptrdiff_t>(from);
    lines.erase(first, first + static_cast<std::ptrdiff_t>(count));
}

// A script begins with a decimal point.
char JournalPane::decimalSeparator() const {
    const auto last = std::find_if(lines.rbegin(), lines.rend(),
                                   [](const MessageLine &line) { return line.decimalSeparator; });
    return last == lines.rend() ? '.' : *last->decimalSeparator;
}

void JournalPane::add(const MessageLine &line) {
    if (line.decimalSeparator && *line.decimalSeparator != decimalSeparator()) {
        MessageLine both = line;
        both.text = *line.decimalSeparator == ',' ? "callPlw -x setDecimalSeparator -s 1\n"
                                                  : "callPlw -x setDecimalSeparator -s 0\n";
        both.text += line.text;
        return insert(both);
    }
    if (!line.setting.empty()) {
        for (std::size_t i = lines.size(); i-- > 0 && !lines[i].setting.empty();) {
            if (lines[i].setting != line.setting) continue;
            erase(i, 1);
            break;
        }
    }
    insert(line);
}

std::vector<MessageLine> JournalPane::linesFrom(std::size_t from) const {
    return {lines.begin() + static_cast<std::ptrdiff_t>(from), lines.end()};
}

void JournalPane::takeBackTo(std::size_t count) {
    const std::size_t from = std::min(count, lines.size());
    const bool wasRedone = !meanwhile.empty() && meanwhile.back().from == from;
    takenBack.push_back({from, linesFrom(from + (wasRedone ? meanwhile.back().staying : 0))});
    erase(from, lines.size() - from);
    if (!wasRedone) return;
    for (const MessageLine &line : meanwhile.back().lines) insert(line);
    meanwhile.pop_back();
}

std::size_t JournalPane::putBack() {
    if (takenBack.empty()) return lines.size();
    const TakenBack again = std::move(takenBack.back());
    takenBack.pop_back();
    const std::size_t from = std::min(again.from, lines.size());
    Meanwhile before{from, 0, linesFrom(from)};
    for (std::size_t i = lines.size(); i-- > from;)
        if (lines[i].selects) erase(i, 1);
    before.staying = lines.size() - from;
    meanwhile.push_back(std::move(before));
    for (const MessageLine &line : again.lines) insert(line);
    return from;
}

std::string JournalPane::script() const {
    std::string text = "#!/bin/sh\n";
    for (const MessageLine &line : lines) text += line.text + '\n';
    return text;
}

} // namespace plotwerk
