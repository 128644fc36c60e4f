// plotArea.h - the plot of a document in a window, and what mouse and keys do on it.
//
// Moving the mouse reads out the place and the nearest point. A click on a curve selects it, with
// control it is added to the selection; a click elsewhere takes away what the mouse has selected. A
// drag selects a rectangle, which messages can ask for; with control it is also zoomed to. The
// wheel zooms at the pointer, beside an axis only that axis. The middle button, or space with the
// first one, pans. A double click shows all data, as Home does; + and - zoom, arrows pan. Where the
// range of the fit is shown, its edges can be dragged.
//
// It changes nothing itself: whoever has it hears what the user wants.
#ifndef PLOTWERK_WINDOW_PLOTAREA_H
#define PLOTWERK_WINDOW_PLOTAREA_H

#include "plotwerk/application/application.h"
#include "plotwerk/window/pictureArea.h"
#include "plotwerk/window/plotMarks.h"
#include "plotwerk/window/readOut.h"
#include "plotwerk/window/viewRanges.h"

#include <functional>
#include <gtkmm.h>

namespace plotwerk {

// What the user wants.
struct PlotWishes {
    std::function<void(const MouseSelection &)> select;      // unset: nothing any more
    std::function<void(int curve, bool append)> selectCurve; // by its index
    std::function<void(const std::vector<AxisRange> &)> setRanges;
    std::function<void()> beginView; // other ranges follow, which are one step of the history
    std::function<void()> rangeOverAll;
    std::function<void(double min, double max)> setFitRange;
    std::function<void(const ReadOut &)> readOut; // empty: the mouse is elsewhere
};

class PlotArea final : public Gtk::Overlay {
  public:
    PlotArea(const Document &document, PlotWishes wishes);

    PictureArea &picture() { return pictureArea; }

    // To be called when the document may have changed, or what the mouse has selected there.
    void refresh(const MouseSelection &selected);

    // Whether the range of the fit is shown, with handles.
    void showFitRange(bool shown);

    // About the middle of the frame, as the keys do.
    void zoom(double factor);

    void setDescription(const Glib::ustring &description);

  private:
    void addMouse();
    void addKeys();
    void move(double x, double y);
    void readOut();
    void beginDrag(double x, double y);
    void updateDrag(double x, double y);
    void endDrag(double x, double y);
    void click(const Point &place, Gdk::ModifierType keys);
    void beginPan();
    void updatePan(double x, double y);
    bool scroll(double x, double y);
    bool press(guint key);
    void pan(double right, double down);
    void followPicture();
    void placeSelection();
    void placeFitRange();
    double *handleAt(const Point &place);
    void moveHandle(double x);
    void endHandle();
    Box bandTo(double x, double y);
    void redrawMarks() { marksArea.queue_draw(); }

    const Document &document;
    const PlotWishes wishes;
    PictureArea pictureArea;
    Gtk::DrawingArea marksArea;
    PlotMarks marks;
    MouseSelection selection;

    std::optional<Point> pointer; // in the widget
    bool readOutIsDue = false;

    Point dragBegin; // in the widget
    bool dragged = false;
    bool spaceIsHeld = false;
    bool showsFitRange = false;
    double *handle = nullptr; // the edge of marks.fitRange that is dragged
    bool pointsAtHandle = false;
    ScaledFrame panned; // the frame when panning began
    double pannedScale = 1;
    gint64 lastScroll = 0;

    Glib::RefPtr<Gtk::GestureDrag> drag;
    Glib::RefPtr<Gtk::GestureDrag> panDrag;
    Glib::RefPtr<Gtk::EventControllerScroll> wheel;
};

} // namespace plotwerk

#endif
