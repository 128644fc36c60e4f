#include "plotwerk/window/plotArea.h"

#include "plotwerk/model/curves.h"
#include "plotwerk/model/ranges.h"

#include <array>
#include <cmath>
#include <cstring>
#include <utility>

namespace plotwerk {

static constexpr double dragThreshold = 4; // pixels that a hand may tremble in a click
static constexpr double clickDistance = 8; // pixels from a curve
static constexpr double handleDistance = 6;
static constexpr double wheelFactor = 0.8; // of what is shown, for each click of the wheel
static constexpr double keyFactor = 0.8;
static constexpr double keyPan = 0.1;             // of the frame
static constexpr gint64 scrollPause = 500 * 1000; // in µs; wheeling on after it is a new view

PlotArea::PlotArea(const Document &shown, PlotWishes heard)
    : document(shown), wishes(std::move(heard)), pictureArea(shown) {
    property_accessible_role() = Gtk::Accessible::Role::IMG;
    gtk_accessible_update_property(GTK_ACCESSIBLE(gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL, "Plot",
                                   -1);
    set_child(pictureArea);
    pictureArea.signalDrawn().connect([this] { followPicture(); });
    marksArea.set_can_target(false);
    marksArea.set_draw_func([this](const Cairo::RefPtr<Cairo::Context> &cr, int, int) {
        drawMarks(cr, marks, pictureArea.view());
    });
    add_overlay(marksArea);
    set_focusable();
    set_focus_on_click();
    set_cursor("crosshair");
    addMouse();
    addKeys();
}

void PlotArea::setDescription(const Glib::ustring &description) {
    gtk_accessible_update_property(GTK_ACCESSIBLE(gobj()), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION,
                                   description.c_str(), -1);
}

void PlotArea::addMouse() {
    const auto motion = Gtk::EventControllerMotion::create();
    motion->signal_motion().connect(sigc::mem_fun(*this, &PlotArea::move));
    motion->signal_enter().connect(sigc::mem_fun(*this, &PlotArea::move));
    motion->signal_leave().connect([this] {
        pointer.reset();
        readOut();
    });
    add_controller(motion);

    drag = Gtk::GestureDrag::create();
    drag->set_button(GDK_BUTTON_PRIMARY);
    drag->signal_drag_begin().connect(sigc::mem_fun(*this, &PlotArea::beginDrag));
    drag->signal_drag_update().connect(sigc::mem_fun(*this, &PlotArea::updateDrag));
    drag->signal_drag_end().connect(sigc::mem_fun(*this, &PlotArea::endDrag));
    add_controller(drag);

    panDrag = Gtk::GestureDrag::create();
    panDrag->set_button(GDK_BUTTON_MIDDLE);
    panDrag->signal_drag_begin().connect([this](double, double) { beginPan(); });
    panDrag->signal_drag_update().connect(sigc::mem_fun(*this, &PlotArea::updatePan));
    add_controller(panDrag);

    const auto twice = Gtk::GestureClick::create();
    twice->set_button(GDK_BUTTON_PRIMARY);
    twice->signal_pressed().connect([this](int presses, double, double) {
        if (presses == 2) wishes.rangeOverAll();
    });
    add_controller(twice);

    wheel = Gtk::EventControllerScroll::create();
    wheel->set_flags(Gtk::EventControllerScroll::Flags::VERTICAL);
    wheel->signal_scroll().connect(sigc::mem_fun(*this, &PlotArea::scroll), false);
    add_controller(wheel);
}

void PlotArea::addKeys() {
    const auto keys = Gtk::EventControllerKey::create();
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType held) {
            const auto others = Gdk::ModifierType::CONTROL_MASK | Gdk::ModifierType::ALT_MASK;
            return (held & others) == Gdk::ModifierType{} && press(key);
        },
        false);
    keys->signal_key_released().connect([this](guint key, guint, Gdk::ModifierType) {
        if (key == GDK_KEY_space) spaceIsHeld = false;
    });
    add_controller(keys);
}

static bool isSame(const std::optional<Box> &a, const std::optional<Box> &b) {
    return a.has_value() == b.has_value() &&
           (!a || (a->left == b->left && a->top == b->top && a->right == b->right &&
                   a->bottom == b->bottom));
}

void PlotArea::refresh(const MouseSelection &selected) {
    const auto values = [](const MouseSelection &of) {
        return std::array{of.x1, of.y1, of.x2, of.y2, static_cast<double>(of.keys)};
    };
    const bool other = std::memcmp(values(selection).data(), values(selected).data(),
                                   sizeof values(selected)) != 0;
    selection = selected;
    if (other) placeSelection();
    pictureArea.refresh();
}

void PlotArea::placeSelection() {
    std::optional<Box> box;
    if (!std::isnan(selection.x1)) {
        const ScaledFrame &frame = pictureArea.view().frame;
        const Point a = frame.at(selection.x1, selection.y1);
        const Point b = frame.at(selection.x2, selection.y2);
        const auto [left, right] = std::minmax({a.x, b.x});
        const auto [top, bottom] = std::minmax({a.y, b.y});
        box = Box{std::max(left, 0.0), std::max(top, 0.0), std::min(right, frame.width),
                  std::min(bottom, frame.height)};
        const bool fills = (selection.keys & 2) != 0; // it was zoomed to
        if (fills || isBreak(a) || isBreak(b) || box->width() <= 0 || box->height() <= 0)
            box.reset();
    }
    if (!isSame(std::exchange(marks.selection, box), box)) redrawMarks();
}

// What lies on the picture follows it, and needs no layout of its own.
void PlotArea::followPicture() {
    placeSelection();
    placeFitRange();
    if (pointer) move(pointer->x, pointer->y);
}

void PlotArea::showFitRange(bool shown) {
    showsFitRange = shown;
    placeFitRange();
}

// Limits beyond the frame, and those that nothing sets, are its edges.
void PlotArea::placeFitRange() {
    if (handle) return;
    std::optional<Box> box;
    if (showsFitRange) {
        const ScaledFrame &frame = pictureArea.view().frame;
        const Range range = fitRangeOf(document);
        const auto edge = [&](double value, double other) {
            return limited(frame.scales[xAxis].position(value), 0, frame.width, other);
        };
        const bool reversed = frame.scales[xAxis].reversed;
        const auto [left, right] = std::minmax({edge(range.min, reversed ? frame.width : 0),
                                                edge(range.max, reversed ? 0 : frame.width)});
        box = Box{left, 0, right, frame.height};
    }
    if (!isSame(std::exchange(marks.fitRange, box), box)) redrawMarks();
}

// Of a place in the widget. Null where there is none.
double *PlotArea::handleAt(const Point &place) {
    if (!marks.fitRange) return nullptr;
    const PageView &view = pictureArea.view();
    const Point onPaper = view.onPaper(place);
    if (onPaper.y < 0 || onPaper.y > view.frame.height) return nullptr;
    for (double *edge : {&marks.fitRange->left, &marks.fitRange->right})
        if (std::abs(onPaper.x - *edge) * view.scale <= handleDistance) return edge;
    return nullptr;
}

void PlotArea::moveHandle(double x) {
    const PageView &view = pictureArea.view();
    const double least = 2 / view.scale;
    const double place = view.onPaper({dragBegin.x + x, 0}).x;
    Box &range = *marks.fitRange;
    if (handle == &range.left)
        range.left = limited(place, 0, std::max(range.right - least, 0.0), 0);
    else
        range.right = limited(place, std::min(range.left + least, view.frame.width),
                              view.frame.width, view.frame.width);
    redrawMarks();
}

void PlotArea::endHandle() {
    const Scale &scale = pictureArea.view().frame.scales[xAxis];
    const auto valueAt = [&](double place) {
        return roundedTo(scale.value(place), scale.value(place + 0.1) - scale.value(place));
    };
    const auto [min, max] =
        std::minmax({valueAt(marks.fitRange->left), valueAt(marks.fitRange->right)});
    handle = nullptr;
    wishes.setFitRange(min, max);
    placeFitRange(); // where it was, if that was refused
}

// The nearest point is looked for once a frame, however often the mouse moves.
void PlotArea::move(double x, double y) {
    pointer = Point{x, y};
    if (std::exchange(readOutIsDue, true)) return;
    add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock> &) {
        readOutIsDue = false;
        if (get_mapped()) readOut(); // else its document may be gone
        return false;
    });
}

void PlotArea::readOut() {
    const bool atHandle = pointer && handleAt(*pointer);
    if (std::exchange(pointsAtHandle, atHandle) != atHandle)
        set_cursor(atHandle ? "ew-resize" : "crosshair");
    std::optional<Point> ring;
    ReadOut text;
    if (pointer) {
        const PageView &view = pictureArea.view();
        const Point place = view.onPaper(*pointer);
        const auto nearest = nearestPoint(document, view.frame, place);
        text = readOutAt(document, view, place, nearest);
        const auto curve = nearest ? curveAt(document, nearest->curve) : std::nullopt;
        if (curve) {
            const CurveLook &look = columnOf(document, *curve).look;
            const Point at = view.frame.at(nearest->x, nearest->y, look.upperX ? upperXAxis : xAxis,
                                           look.rightY ? rightYAxis : yAxis);
            if (view.frame.box().contains(at)) ring = at;
        }
    }
    if (ring || marks.nearestPoint) redrawMarks();
    marks.nearestPoint = ring;
    wishes.readOut(text);
}

Box PlotArea::bandTo(double x, double y) {
    const PageView &view = pictureArea.view();
    const Point a = view.onPaper(dragBegin);
    const Point b = view.onPaper({dragBegin.x + x, dragBegin.y + y});
    const auto [left, right] = std::minmax({a.x, b.x});
    const auto [top, bottom] = std::minmax({a.y, b.y});
    return {left, top, right, bottom};
}

void PlotArea::beginDrag(double x, double y) {
    grab_focus();
    dragBegin = {x, y};
    dragged = false;
    handle = spaceIsHeld ? nullptr : handleAt(dragBegin);
    if (spaceIsHeld) beginPan();
}

void PlotArea::updateDrag(double x, double y) {
    if (spaceIsHeld) return updatePan(x, y);
    if (!dragged && std::hypot(x, y) < dragThreshold) return;
    dragged = true;
    if (handle) return moveHandle(x);
    marks.band = bandTo(x, y);
    redrawMarks();
}

static int codeOf(Gdk::ModifierType keys) {
    const auto holds = [&](Gdk::ModifierType key) { return (keys & key) == key; };
    return (holds(Gdk::ModifierType::SHIFT_MASK) ? 1 : 0) +
           (holds(Gdk::ModifierType::CONTROL_MASK) ? 2 : 0) +
           (holds(Gdk::ModifierType::ALT_MASK) ? 4 : 0);
}

void PlotArea::endDrag(double x, double y) {
    if (spaceIsHeld) return;
    const Gdk::ModifierType keys = drag->get_current_event_state();
    if (handle && dragged) return endHandle();
    handle = nullptr;
    if (!dragged) return click(dragBegin, keys);

    marks.band.reset();
    redrawMarks();
    const PageView &view = pictureArea.view();
    const Box band = bandTo(x, y);
    const auto valuesAt = [&](const Point &place) {
        const Point onPaper = view.onPaper(place);
        const ValuePair here = view.frame.valuesAt(onPaper);
        const ValuePair next = view.frame.valuesAt({onPaper.x + 0.1, onPaper.y + 0.1});
        return ValuePair{roundedTo(here.x, next.x - here.x), roundedTo(here.y, next.y - here.y)};
    };
    const ValuePair begin = valuesAt(dragBegin);
    const ValuePair end = valuesAt({dragBegin.x + x, dragBegin.y + y});
    const std::vector<AxisRange> ranges = rangesOfBox(view.frame, band);
    wishes.select({begin.x, begin.y, end.x, end.y, codeOf(keys)});
    if ((codeOf(keys) & 2) && !ranges.empty()) {
        wishes.beginView();
        wishes.setRanges(ranges);
    }
}

void PlotArea::click(const Point &place, Gdk::ModifierType keys) {
    const PageView &view = pictureArea.view();
    const auto nearest = nearestPoint(document, view.frame, view.onPaper(place));
    if (nearest && nearest->distance * view.scale <= clickDistance)
        wishes.selectCurve(nearest->curve, (codeOf(keys) & 2) != 0);
    else
        wishes.select({});
}

void PlotArea::beginPan() {
    panned = pictureArea.view().frame;
    pannedScale = pictureArea.view().scale;
    wishes.beginView();
}

void PlotArea::updatePan(double x, double y) {
    wishes.setRanges(
        movedRanges(panned, axesAt(panned, {0, 0}), {x / pannedScale, y / pannedScale}));
}

bool PlotArea::scroll(double, double y) {
    if (!pointer) return false;
    const PageView &view = pictureArea.view();
    const Point place = view.onPaper(*pointer);
    const auto axes = axesAt(view.frame, place);
    if (axes.empty()) return false;
    const gint64 now = g_get_monotonic_time();
    if (now - std::exchange(lastScroll, now) > scrollPause) wishes.beginView();
    wishes.setRanges(zoomedRanges(view.frame, axes, place, std::pow(wheelFactor, -y)));
    return true;
}

void PlotArea::zoom(double factor) {
    const ScaledFrame frame = pictureArea.view().frame;
    wishes.beginView();
    const Point middle{frame.width / 2, frame.height / 2};
    wishes.setRanges(zoomedRanges(frame, axesAt(frame, middle), middle, factor));
}

void PlotArea::pan(double right, double down) {
    const ScaledFrame frame = pictureArea.view().frame;
    wishes.beginView();
    wishes.setRanges(movedRanges(frame, axesAt(frame, {0, 0}),
                                 {-right * keyPan * frame.width, -down * keyPan * frame.height}));
}

bool PlotArea::press(guint key) {
    switch (key) {
    case GDK_KEY_plus:
    case GDK_KEY_KP_Add: zoom(keyFactor); return true;
    case GDK_KEY_minus:
    case GDK_KEY_KP_Subtract: zoom(1 / keyFactor); return true;
    case GDK_KEY_Home: wishes.rangeOverAll(); return true;
    case GDK_KEY_Left: pan(-1, 0); return true;
    case GDK_KEY_Right: pan(1, 0); return true;
    case GDK_KEY_Up: pan(0, -1); return true;
    case GDK_KEY_Down: pan(0, 1); return true;
    case GDK_KEY_space: spaceIsHeld = true; return true;
    default: return false;
    }
}

} // namespace plotwerk
