// dragSource FILE ... - a window from which the files can be dragged to another program's.
#include <gtkmm.h>

int main(int argc, char **argv) {
    std::string list;
    for (int i = 1; i < argc; ++i) list += Glib::filename_to_uri(argv[i]) + "\r\n";
    const auto bytes = Glib::Bytes::create(list.data(), list.size());

    const auto application =
        Gtk::Application::create("org.plotwerk.DragSource", Gio::Application::Flags::NON_UNIQUE);
    std::unique_ptr<Gtk::Window> window;
    application->signal_activate().connect([&] {
        window = std::make_unique<Gtk::Window>();
        window->set_title("drag source");
        window->set_default_size(100, 100);
        window->set_decorated(false);
        const auto source = Gtk::DragSource::create();
        source->set_content(Gdk::ContentProvider::create("text/uri-list", bytes));
        window->add_controller(source);
        application->add_window(*window);
        window->present();
    });
    return application->run();
}
