// A module that GIO loads into the program under test: at SIGUSR1 it writes to the file $WIDGETS
// what the windows show, a line for each widget, those in it behind it: place and size on the
// screen, kind, what it says, what else is seen of it. Marks stand before what it says:
//   * selected   > with the focus   ~ insensitive   ! an error
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gio/gio.h>
#include <glib-unix.h>
#include <gtk/gtk.h>
#include <string>

static std::string lineOf(const char *text) {
    std::string line = text ? text : "";
    for (std::size_t end; (end = line.find_first_of("\n\t")) != line.npos;)
        line.replace(end, 1, line[end] == '\t' ? " " : " | ");
    return line;
}

static std::string textIn(GtkTextBuffer *buffer) {
    GtkTextIter begin, end;
    gtk_text_buffer_get_bounds(buffer, &begin, &end);
    char *text = gtk_text_buffer_get_text(buffer, &begin, &end, FALSE);
    const std::string line = '\'' + lineOf(text) + '\'';
    g_free(text);
    return line;
}

static bool has(GtkWidget *widget, GtkStateFlags flag) {
    return widget && (gtk_widget_get_state_flags(widget) & flag) != 0;
}

static std::string kindOf(gpointer widget) {
    const std::string name = G_OBJECT_TYPE_NAME(widget);
    return name.substr(name.rfind("Gtk") + 3);
}

// Check buttons and the entries of menus have an icon that tells whether they are active.
static std::string saidBy(GtkWidget *widget, GtkWidget *parent) {
    const bool isOfBar = parent && kindOf(parent) == "PopoverMenuBarItem";
    if (isOfBar && !has(parent, GTK_STATE_FLAG_SELECTED)) return "";
    if (GTK_IS_WINDOW(widget)) return "= " + lineOf(gtk_window_get_title(GTK_WINDOW(widget)));
    if (GTK_IS_LABEL(widget)) return lineOf(gtk_label_get_text(GTK_LABEL(widget)));
    if (GTK_IS_TEXT(widget))
        return '\'' + lineOf(gtk_editable_get_text(GTK_EDITABLE(widget))) + '\'';
    if (GTK_IS_TEXT_VIEW(widget)) return textIn(gtk_text_view_get_buffer(GTK_TEXT_VIEW(widget)));
    if (GTK_IS_SPINNER(widget)) return gtk_spinner_get_spinning(GTK_SPINNER(widget)) ? "@" : "";
    if (std::string(gtk_widget_get_css_name(widget)) != "check") return "";
    return has(widget, GTK_STATE_FLAG_CHECKED) ? "[x]" : "[ ]";
}

static std::string marksOf(GtkWidget *widget) {
    std::string marks;
    if (has(widget, GTK_STATE_FLAG_SELECTED) && !GTK_IS_TEXT(widget)) marks += '*';
    if (gtk_widget_has_focus(widget)) marks += '>';
    if (!gtk_widget_is_sensitive(widget)) marks += '~';
    if (gtk_widget_has_css_class(widget, "error")) marks += '!';
    return marks;
}

static std::string looksOf(GtkWidget *widget, const std::string &said) {
    std::string looks;
    char **classes = gtk_widget_get_css_classes(widget);
    for (char **one = classes; *one; ++one) looks += std::string(" .") + *one;
    g_strfreev(classes);
    if (gtk_widget_has_css_class(widget, "error")) {
        GdkRGBA colour{};
        gtk_style_context_get_color(gtk_widget_get_style_context(widget), &colour);
        char *name = gdk_rgba_to_string(&colour);
        looks += std::string(" ") + name;
        g_free(name);
    }
    if (GTK_IS_WINDOW(widget)) {
        looks += " at least";
        for (const GtkOrientation each : {GTK_ORIENTATION_HORIZONTAL, GTK_ORIENTATION_VERTICAL}) {
            int least = 0;
            gtk_widget_measure(widget, each, -1, &least, nullptr, nullptr, nullptr);
            looks += ' ' + std::to_string(least);
        }
    }
    if (const char *tip = gtk_widget_get_tooltip_text(widget)) looks += " {" + lineOf(tip) + '}';
    if (GdkCursor *cursor = gtk_widget_get_cursor(widget))
        looks += " ^" + lineOf(gdk_cursor_get_name(cursor));
    if (const double opacity = gtk_widget_get_opacity(widget); opacity < 1)
        looks += ' ' + std::to_string(std::lround(100 * opacity)) + '%';
    for (const auto property :
         {GTK_ACCESSIBLE_PROPERTY_LABEL, GTK_ACCESSIBLE_PROPERTY_DESCRIPTION}) {
        char *name = gtk_test_accessible_check_property(GTK_ACCESSIBLE(widget), property, "");
        const std::string line = lineOf(name);
        const bool isNew = line != "undefined" && line != said && looks.find(line) == line.npos;
        if (isNew) looks += " (" + line + ')';
        g_free(name);
    }
    return looks;
}

static std::string placeOf(GtkWidget *widget) {
    GtkNative *native = gtk_widget_get_native(widget);
    graphene_rect_t box{};
    if (!gtk_widget_compute_bounds(widget, GTK_WIDGET(native), &box)) return "0 0 0 0 ";
    double x = 0, y = 0;
    gtk_native_get_surface_transform(native, &x, &y);
    GdkSurface *surface = gtk_native_get_surface(native);
    if (GDK_IS_POPUP(surface)) {
        x += gdk_popup_get_position_x(GDK_POPUP(surface));
        y += gdk_popup_get_position_y(GDK_POPUP(surface));
    }
    double width = box.size.width, height = box.size.height;
    if (GTK_IS_LABEL(widget)) { // the text itself
        int right = 0, down = 0, textWidth = 0, textHeight = 0;
        gtk_label_get_layout_offsets(GTK_LABEL(widget), &right, &down);
        pango_layout_get_pixel_size(gtk_label_get_layout(GTK_LABEL(widget)), &textWidth,
                                    &textHeight);
        x += right;
        y += down;
        width = textWidth;
        height = textHeight;
    }
    std::string numbers;
    for (const double number : {x + box.origin.x, y + box.origin.y, width, height})
        numbers += std::to_string(std::lround(number)) + ' ';
    return numbers;
}

static void tell(GtkWidget *widget, std::ostream &out) {
    const bool comesAndGoes = GTK_IS_SCROLLBAR(widget) || kindOf(widget) == "TooltipWindow";
    if (!gtk_widget_get_mapped(widget) || comesAndGoes) return;
    GtkWidget *parent = gtk_widget_get_parent(widget);
    const std::string said = saidBy(widget, parent);
    const bool isMarked = !said.empty() || GTK_IS_LIST_BASE(parent) || gtk_widget_has_focus(widget);
    out << placeOf(widget) << kindOf(widget) << '\t';
    out << (isMarked ? marksOf(widget) : "") << said << '\t' << looksOf(widget, said) << '\n';
    for (GtkWidget *child = gtk_widget_get_first_child(widget); child;
         child = gtk_widget_get_next_sibling(child))
        tell(child, out);
}

static gboolean tellAll(gpointer) {
    const std::string path = std::getenv("WIDGETS");
    std::ofstream out(path + ".new");
    GListModel *windows = gtk_window_get_toplevels();
    for (guint i = 0; i < g_list_model_get_n_items(windows); ++i) {
        gpointer window = g_list_model_get_item(windows, i);
        tell(GTK_WIDGET(window), out);
        g_object_unref(window);
    }
    out.close();
    std::filesystem::rename(path + ".new", path);
    return G_SOURCE_CONTINUE;
}

extern "C" {

G_MODULE_EXPORT void g_io_module_load(GIOModule *module) {
    g_type_module_use(G_TYPE_MODULE(module));
    g_unix_signal_add(SIGUSR1, tellAll, nullptr);
}

G_MODULE_EXPORT void g_io_module_unload(GIOModule *) {
}

G_MODULE_EXPORT char **g_io_module_query() {
    return g_new0(char *, 1);
}
}
