#include "plotwerk/drawing/typesetter.h"

#include "plotwerk/base/log.h"
#include "plotwerk/base/memoryReserve.h"
#include "plotwerk/drawing/curveSample.h"

#include <cmath>
#include <cstdio>
#include <exception>
#include <memory>
#include <set>
#include <sys/mman.h>
#include <thread>

namespace plotwerk {

static constexpr double scriptSize = 0.7;
static constexpr double innerScriptSize = 0.8;  // of the script around it
static constexpr double superscriptRise = 0.38; // of the text's size
static constexpr double subscriptRise = -0.16;
static constexpr double fontHeight = 1.164; // of the font, by its own measures

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

static double riseOf(int script, double size) {
    return size * (script > 0 ? superscriptRise : subscriptRise);
}

static void addRun(PangoAttrList *list, const TextRun &run, double usualSize, std::size_t begin) {
    const std::size_t end = begin + run.text.size();
    const double size = std::isnan(run.size) ? usualSize : run.size;
    double drawnSize = size;
    double rise = run.rise;
    if (run.script != 0) {
        rise += riseOf(run.script, drawnSize);
        drawnSize *= scriptSize;
    }
    if (run.innerScript != 0) {
        rise += riseOf(run.innerScript, drawnSize);
        drawnSize *= innerScriptSize;
    }

    addAttribute(list, pango_attr_size_new_absolute(pangoUnits(drawnSize)), begin, end);
    if (!std::isnan(run.width)) {
        const PangoRectangle room{0, pangoUnits(-sampleHeight), pangoUnits(run.width),
                                  pangoUnits(sampleHeight)};
        const PangoRectangle ink = run.sample == nullptr ? PangoRectangle{} : room;
        auto *look = const_cast<CurveLook *>(run.sample); // handed on to drawSampleOf
        addAttribute(list, pango_attr_shape_new_with_data(&ink, &room, look, nullptr, nullptr),
                     begin, end);
    }
    if (run.colour) {
        const auto part = [](double value) {
            return static_cast<guint16>(std::lround(value * 65535));
        };
        addAttribute(list,
                     pango_attr_foreground_new(part(run.colour->red), part(run.colour->green),
                                               part(run.colour->blue)),
                     begin, end);
    }
    if (rise != 0) addAttribute(list, pango_attr_rise_new(pangoUnits(rise)), begin, end);
    if (run.bold) addAttribute(list, pango_attr_weight_new(PANGO_WEIGHT_BOLD), begin, end);
    if (run.italic) addAttribute(list, pango_attr_style_new(PANGO_STYLE_ITALIC), begin, end);
    if (run.underline)
        addAttribute(list, pango_attr_underline_new(PANGO_UNDERLINE_SINGLE), begin, end);
}

static void drawSampleOf(cairo_t *cr, PangoAttrShape *shape, gboolean, gpointer) {
    if (shape->data == nullptr) return;
    Point at;
    cairo_get_current_point(cr, &at.x, &at.y);
    drawSample(cr, *static_cast<const CurveLook *>(shape->data), at,
               pointsOf(shape->logical_rect.width));
}

// A bit for each character, whether it was missed already. Pictures are drawn by children, which
// share it, so that each character is named once.
static unsigned char *missedCharacters() {
    constexpr std::size_t size = 0x110000 / 8;
    static void *shared =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return shared == MAP_FAILED ? nullptr : static_cast<unsigned char *>(shared);
}

static bool isNew(gunichar character) {
    unsigned char *missed = missedCharacters();
    if (missed == nullptr || character >= 0x110000) return false;
    const auto bit = static_cast<unsigned char>(1U << character % 8);
    const bool isNew = (missed[character / 8] & bit) == 0;
    missed[character / 8] |= bit;
    return isNew;
}

static void logMissingGlyphs(PangoLayout *layout) {
    if (pango_layout_get_unknown_glyphs_count(layout) == 0) return;
    std::set<gunichar> missing;
    PangoLayoutIter *iter = pango_layout_get_iter(layout);
    do {
        const PangoLayoutRun *run = pango_layout_iter_get_run_readonly(iter);
        for (int i = 0; run != nullptr && i < run->glyphs->num_glyphs; ++i) {
            const PangoGlyph glyph = run->glyphs->glyphs[i].glyph;
            if ((glyph & PANGO_GLYPH_UNKNOWN_FLAG) == 0 || glyph == PANGO_GLYPH_EMPTY) continue;
            const gunichar character = glyph & ~PANGO_GLYPH_UNKNOWN_FLAG;
            if (isNew(character)) missing.insert(character);
        }
    } while (pango_layout_iter_next_run(iter));
    pango_layout_iter_free(iter);

    std::string list;
    for (const gunichar character : missing) {
        char utf8[7] = {};
        g_unichar_to_utf8(character, utf8);
        char code[20];
        std::snprintf(code, sizeof code, " (U+%04X)", character);
        list += (list.empty() ? "" : ", ") + std::string(utf8) + code;
    }
    if (!list.empty()) log(LogLevel::warning, "no font that is installed has " + list);
}

static void setText(PangoLayout *layout, const RichText &text, double size) {
    PangoAttrList *attributes = pango_attr_list_new();
    std::string characters;
    for (const TextRun &run : text) {
        addRun(attributes, run, size, characters.size());
        characters += run.text;
    }
    pango_layout_set_text(layout, characters.data(), static_cast<int>(characters.size()));
    pango_layout_set_attributes(layout, attributes);
    pango_attr_list_unref(attributes);
}

// Goes that far on, or back, without a line end.
static TextRun step(double width) {
    TextRun run;
    run.text = "\u2060";
    run.width = width;
    return run;
}

// A subscript with a superscript right behind it, or the other way round, stand above each other.
static RichText withScriptsStacked(PangoContext *context, const RichText &text, double size) {
    const auto endOfScript = [&](std::size_t i) {
        const int script = i < text.size() ? text[i].script : 0;
        while (script != 0 && i < text.size() && text[i].script == script) ++i;
        return i;
    };
    const auto part = [&](std::size_t begin, std::size_t end) {
        return RichText(text.begin() + static_cast<std::ptrdiff_t>(begin),
                        text.begin() + static_cast<std::ptrdiff_t>(end));
    };
    const auto widthOf = [&](const RichText &runs) {
        const std::unique_ptr<PangoLayout, GObjectUnref> layout(pango_layout_new(context));
        setText(layout.get(), runs, size);
        PangoRectangle logical;
        pango_layout_get_extents(layout.get(), nullptr, &logical);
        return pointsOf(logical.width);
    };
    RichText result;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t middle = endOfScript(i);
        const std::size_t end = endOfScript(middle);
        if (middle == i || end == middle) {
            result.push_back(text[i++]);
            continue;
        }
        const RichText first = part(i, middle);
        const RichText second = part(middle, end);
        const double width = widthOf(first);
        result.insert(result.end(), first.begin(), first.end());
        result.push_back(step(-width));
        result.insert(result.end(), second.begin(), second.end());
        result.push_back(step(std::max(width - widthOf(second), 0.0)));
        i = end;
    }
    return result;
}

SetText::SetText(PangoContext *context, const RichText &text, double size, double wrapWidth,
                 int lines, PangoAlignment alignment)
    : layout(pango_layout_new(context)) {
    setText(layout.get(), withScriptsStacked(context, text, size), size);
    pango_layout_set_alignment(layout.get(), alignment);
    // lines with scripts stand no farther apart than others
    constexpr auto spacing = static_cast<float>(lineHeight / textSize / fontHeight);
    pango_layout_set_line_spacing(layout.get(), spacing);
    if (wrapWidth > 0) {
        pango_layout_set_width(layout.get(), pangoUnits(wrapWidth));
        pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
        pango_layout_set_height(layout.get(), -lines);
        pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    }

    logMissingGlyphs(layout.get());

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

void requireRoomForFonts() {
    constexpr std::size_t most = 64'000'000; // address space, with that of threads' stacks
    requireFree(most);
}

void beginToReadFonts() {
    try {
        requireRoomForFonts();
        std::thread([] {}).join(); // where none can be started pango ends the process
    } catch (const std::exception &) {
        return;
    }
    pango_cairo_font_map_get_default();
}

Typesetter::Typesetter()
    : context(pango_font_map_create_context(pango_cairo_font_map_get_default())) {
    PangoFontDescription *font = pango_font_description_from_string("DejaVu Sans");
    pango_context_set_font_description(context.get(), font);
    pango_font_description_free(font);

    cairo_font_options_t *options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(context.get(), options);
    cairo_font_options_destroy(options);
    pango_context_set_round_glyph_positions(context.get(), FALSE);
    pango_cairo_context_set_shape_renderer(context.get(), drawSampleOf, nullptr, nullptr);
    missedCharacters(); // before any child
}

SetText Typesetter::line(const RichText &text, double size) const {
    return {context.get(), text, size, 0, 1};
}

SetText Typesetter::paragraph(const RichText &text, double size, double width, int lines,
                              PangoAlignment alignment) const {
    return {context.get(), text, size, width, lines, alignment};
}

} // namespace plotwerk
