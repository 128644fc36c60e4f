#include "plotwerk/drawing/typesetter.h"

#include <memory>

namespace plotwerk {

static constexpr double scriptSize = 0.7;
static constexpr double superscriptRise = 0.38; // of the text's size
static constexpr double subscriptRise = -0.16;

static int pangoUnits(double points) {
    return pango_units_from_double(points);
}

static double pointsOf(int units) {
    return pango_units_to_double(units);
}

static void addAttribute(PangoAttrList *list, PangoAttribute *attribute, std::size_t begin,
                         std::size_t end) {
    attribute->start_index = static_cast<guint>(begin);
    attribute->end_index = static_cast<guint>(end);
    pango_attr_list_insert(list, attribute);
}

static void addRun(PangoAttrList *list, const TextRun &run, double textSize, std::size_t begin) {
    const std::size_t end = begin + run.text.size();
    const double size = std::isnan(run.size) ? textSize : run.size;
    const double drawnSize = run.script == 0 ? size : scriptSize * size;
    double rise = run.rise;
    if (run.script != 0) rise += size * (run.script > 0 ? superscriptRise : subscriptRise);

    addAttribute(list, pango_attr_size_new_absolute(pangoUnits(drawnSize)), begin, end);
    if (rise != 0) addAttribute(list, pango_attr_rise_new(pangoUnits(rise)), begin, end);
    if (run.bold) addAttribute(list, pango_attr_weight_new(PANGO_WEIGHT_BOLD), begin, end);
    if (run.italic) addAttribute(list, pango_attr_style_new(PANGO_STYLE_ITALIC), begin, end);
    if (run.underline)
        addAttribute(list, pango_attr_underline_new(PANGO_UNDERLINE_SINGLE), begin, end);
}

SetText::SetText(PangoContext *context, const RichText &text, double size, double wrapWidth,
                 int lines)
    : layout(pango_layout_new(context)) {
    PangoAttrList *attributes = pango_attr_list_new();
    std::string characters;
    for (const TextRun &run : text) {
        addRun(attributes, run, size, characters.size());
        characters += run.text;
    }
    pango_layout_set_text(layout.get(), characters.data(), static_cast<int>(characters.size()));
    pango_layout_set_attributes(layout.get(), attributes);
    pango_attr_list_unref(attributes);

    pango_layout_set_alignment(layout.get(), PANGO_ALIGN_CENTER);
    if (wrapWidth > 0) {
        pango_layout_set_width(layout.get(), pangoUnits(wrapWidth));
        pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
        pango_layout_set_height(layout.get(), -lines);
        pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    }

    PangoRectangle ink;
    pango_layout_get_extents(layout.get(), &ink, nullptr);
    const double baseline = pointsOf(pango_layout_get_baseline(layout.get()));
    inkBox.left = pointsOf(ink.x);
    inkBox.right = pointsOf(ink.x + ink.width);
    inkBox.top = pointsOf(ink.y) - baseline;
    inkBox.bottom = pointsOf(ink.y + ink.height) - baseline;
}

Point SetText::middleOfInk() const {
    return {(inkBox.left + inkBox.right) / 2, (inkBox.top + inkBox.bottom) / 2};
}

void SetText::draw(cairo_t *cr, Point place, double angle, Point anchor) const {
    const double baseline = pointsOf(pango_layout_get_baseline(layout.get()));
    cairo_save(cr);
    cairo_translate(cr, place.x, place.y);
    cairo_rotate(cr, -angle * G_PI / 180);
    cairo_move_to(cr, -anchor.x, -anchor.y - baseline);
    pango_cairo_show_layout(cr, layout.get());
    cairo_restore(cr);
}

Typesetter::Typesetter()
    : context(pango_font_map_create_context(pango_cairo_font_map_get_default())) {
    PangoFontDescription *font = pango_font_description_from_string("DejaVu Sans");
    pango_context_set_font_description(context.get(), font);
    pango_font_description_free(font);

    // one unit of length is a point, on screen and on paper alike
    pango_cairo_context_set_resolution(context.get(), 72);
    cairo_font_options_t *options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(context.get(), options);
    cairo_font_options_destroy(options);
    pango_context_set_round_glyph_positions(context.get(), FALSE);
}

SetText Typesetter::line(const RichText &text, double size) const {
    return {context.get(), text, size, 0, 1};
}

SetText Typesetter::paragraph(const RichText &text, double size, double width, int lines) const {
    return {context.get(), text, size, width, lines};
}

} // namespace plotwerk
