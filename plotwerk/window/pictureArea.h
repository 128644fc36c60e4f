// pictureArea.h - a widget that shows the picture of a document, always as the document is now,
// with the document's proportions or filling the widget.
#ifndef PLOTWERK_WINDOW_PICTUREAREA_H
#define PLOTWERK_WINDOW_PICTUREAREA_H

#include "plotwerk/model/document.h"
#include "plotwerk/window/pageView.h"

#include <chrono>
#include <gtkmm.h>
#include <optional>

namespace plotwerk {

class PictureArea final : public Gtk::DrawingArea {
  public:
    // The document must outlive it.
    explicit PictureArea(const Document &document);
    ~PictureArea() override;

    // To be called when the document may have changed. It is drawn with the next frame; but while
    // that goes on without a pause, about ten times a second, so that at most a fifth of the time
    // is spent in drawing.
    void refresh();

    // As refresh, and never later than with the next frame: for what the user does.
    void refreshNow();

    bool fills() const { return filling; }
    void setFills(bool fills);

    // Of the document as it is now.
    const PageView &view();

    // Whether the main loop has had no time for a frame that was asked for that long ago.
    bool isBehind(std::chrono::duration<double> time) const;

    sigc::signal<void()> &signalDrawn() { return drawn; }

  private:
    using Clock = std::chrono::steady_clock;

    void draw(const Cairo::RefPtr<Cairo::Context> &cr, int width, int height);
    void drawImage(int width, int height);
    bool imageIsCurrent(int width, int height) const;
    FrameSize frameSize(int width, int height) const;
    void setView(const Picture &picture, int width, int height);
    void drawAfterPause();
    void askForFrame();
    void watchFrames();
    void unwatchFrames();

    const Document &document;
    bool filling = false;
    PageView pageView;
    std::optional<std::uint64_t> viewRevision; // of pageView, and the widget's size then
    int viewWidth = 0;
    int viewHeight = 0;

    Cairo::RefPtr<Cairo::ImageSurface> image; // the picture, in the dots of the screen
    std::uint64_t imageRevision = 0;
    int imageWidth = 0;
    int imageHeight = 0;
    int imageScale = 0;

    std::optional<Clock::time_point> dueSince;
    std::optional<Clock::time_point> askedForFrame;
    Clock::time_point lastRefresh;
    Glib::RefPtr<Gdk::FrameClock> frameClock;
    Clock::time_point frameBegin;
    Clock::duration lastFrame{};
    Clock::time_point restUntil; // from drawing
    bool drewInFrame = false;
    sigc::connection delayed;
    sigc::signal<void()> drawn;
};

} // namespace plotwerk

#endif
