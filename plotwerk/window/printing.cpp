#include "plotwerk/window/printing.h"

#include "plotwerk/drawing/picture.h"

#include <algorithm>
#include <memory>

namespace plotwerk {

static void drawPage(const Glib::RefPtr<Gtk::PrintContext> &context, const Document &document) {
    const Picture picture(document);
    const double width = context->get_width();
    const double height = context->get_height();
    const double scale =
        std::min({1.0, width / picture.page().width(), height / picture.page().height()});
    cairo_t *cr = context->get_cairo_context()->cobj();
    cairo_translate(cr, (width - scale * picture.page().width()) / 2,
                    (height - scale * picture.page().height()) / 2);
    cairo_scale(cr, scale, scale);
    picture.drawOn(cr);
}

void printByDialog(Gtk::Window &window, const Document &document,
                   const sigc::slot<void(const Glib::ustring &reason)> &failed) {
    const auto operation = Gtk::PrintOperation::create();
    const auto printed = std::make_shared<const Document>(document);
    operation->set_job_name(document.name);
    operation->set_n_pages(1);
    const auto settings = Gtk::PrintSettings::create();
    settings->set(GTK_PRINT_SETTINGS_OUTPUT_BASENAME, document.name); // of a file
    operation->set_print_settings(settings);
    operation->set_unit(Gtk::Unit::POINTS);
    operation->set_allow_async();
    operation->signal_draw_page().connect([printed](const Glib::RefPtr<Gtk::PrintContext> &context,
                                                    int) { drawPage(context, *printed); });
    operation->signal_done().connect([operation, failed](Gtk::PrintOperation::Result result) {
        if (result == Gtk::PrintOperation::Result::ERROR)
            failed("the picture could not be printed");
    });
    try {
        operation->run(Gtk::PrintOperation::Action::PRINT_DIALOG, window);
    } catch (const Glib::Error &error) {
        failed(error.what());
    }
}

} // namespace plotwerk
