#include "plotwerk/window/statusLine.h"

namespace plotwerk {

StatusLine::StatusLine() : Gtk::Box(Gtk::Orientation::HORIZONTAL, 24) {
    set_margin_start(12);
    set_margin_end(12);
    set_margin_top(4);
    set_margin_bottom(4);
    for (Gtk::Label *label : {&place, &point, &message}) {
        label->set_xalign(0);
        label->add_css_class("numeric");
        label->set_single_line_mode();
        append(*label);
    }
    point.set_ellipsize(Pango::EllipsizeMode::MIDDLE);
    message.set_ellipsize(Pango::EllipsizeMode::END);
    message.set_hexpand();
    message.set_xalign(1);
    place.set_text(" ");
}

void StatusLine::showReadOut(const ReadOut &readOut) {
    place.set_text(readOut.place.empty() ? " " : readOut.place);
    point.set_text(readOut.point);
    if (!readOut.place.empty()) lastReadOut = readOut.text();
}

void StatusLine::note(const Glib::ustring &text) {
    message.set_text(text);
    message.set_tooltip_text(text);
    message.remove_css_class("error");
}

void StatusLine::tell(const Glib::ustring &text) {
    note(text);
    message.add_css_class("error");
    if (!text.empty()) toldAt = std::chrono::steady_clock::now();
}

bool StatusLine::isRead() const {
    constexpr std::chrono::seconds toRead{2};
    return std::chrono::steady_clock::now() >= toldAt + toRead;
}

} // namespace plotwerk
