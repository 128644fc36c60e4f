#include "plotwerk/window/journalPane.h"

#include <algorithm>

namespace plotwerk {

JournalPane::JournalPane() {
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
    set_min_content_height(96);
}

void JournalPane::add(const MessageLine &line) {
    const auto buffer = view.get_buffer();
    const auto eraseLine = [&](std::size_t from, std::size_t count) {
        auto begin = buffer->get_iter_at_line(static_cast<int>(from));
        auto end = buffer->get_iter_at_line(static_cast<int>(from + count));
        buffer->erase(begin, end);
    };
    const auto rowsOf = [](const MessageLine &of) {
        return static_cast<std::size_t>(std::count(of.text.begin(), of.text.end(), '\n')) + 1;
    };
    if (!line.setting.empty()) {
        std::size_t row = static_cast<std::size_t>(buffer->get_line_count()) - 1;
        for (std::size_t i = lines.size(); i-- > 0 && !lines[i].setting.empty();) {
            row -= rowsOf(lines[i]);
            if (lines[i].setting != line.setting) continue;
            eraseLine(row, rowsOf(lines[i]));
            lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(i));
            break;
        }
    }
    lines.push_back(line);
    buffer->insert(buffer->end(), line.text + '\n');
    auto end = buffer->end();
    view.scroll_to(end);
}

std::string JournalPane::script() const {
    std::string text = "#!/bin/sh\n";
    for (const MessageLine &line : lines) text += line.text + '\n';
    return text;
}

} // namespace plotwerk
