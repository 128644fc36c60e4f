#include "plotwerk/window/pictureArea.h"

#include "plotwerk/base/log.h"

#include <cmath>
#include <string>
#include <utility>

namespace plotwerk {

using namespace std::chrono_literals;

PictureArea::PictureArea(const Document &shown) : document(shown) {
    set_expand();
    set_draw_func(sigc::mem_fun(*this, &PictureArea::draw));
    property_scale_factor().signal_changed().connect([this] { queue_draw(); });
    signal_realize().connect([this] { watchFrames(); });
    signal_unrealize().connect([this] { unwatchFrames(); });
}

PictureArea::~PictureArea() {
    delayed.disconnect();
    unwatchFrames();
}

// A draw function of GTK only records what is to be done; the frame is over when that is done.
void PictureArea::watchFrames() {
    const auto begin = +[](GdkFrameClock *, gpointer area) {
        static_cast<PictureArea *>(area)->frameBegin = Clock::now();
    };
    const auto end = +[](GdkFrameClock *, gpointer area) {
        auto &of = *static_cast<PictureArea *>(area);
        if (!std::exchange(of.drewInFrame, false)) return;
        const auto now = Clock::now();
        of.lastFrame = now - of.frameBegin;
        of.restUntil = now + 4 * of.lastFrame;
    };
    frameClock = get_frame_clock();
    g_signal_connect(frameClock->gobj(), "before-paint", G_CALLBACK(begin), this);
    g_signal_connect(frameClock->gobj(), "after-paint", G_CALLBACK(end), this);
}

void PictureArea::unwatchFrames() {
    if (frameClock) g_signal_handlers_disconnect_by_data(frameClock->gobj(), this);
    frameClock.reset();
}

bool PictureArea::imageIsCurrent(int width, int height) const {
    return image && imageRevision == document.revision && imageWidth == width &&
           imageHeight == height && imageScale == get_scale_factor();
}

void PictureArea::refresh() {
    if (imageIsCurrent(get_width(), get_height())) return;
    lastRefresh = Clock::now();
    if (dueSince) return;
    dueSince = lastRefresh;
    drawAfterPause();
}

// Whoever sends one message after the other, each when the last is answered, would wait for a
// picture that the next one makes old.
void PictureArea::drawAfterPause() {
    constexpr auto pause = 4ms;
    const auto longest = std::max<Clock::duration>(100ms, 4 * lastFrame);
    const auto time = std::max(std::min(lastRefresh + pause, *dueSince + longest), restUntil);
    const auto rest = std::chrono::ceil<std::chrono::milliseconds>(time - Clock::now());
    if (rest <= 0ms) return askForFrame();
    delayed = Glib::signal_timeout().connect(
        [this] {
            drawAfterPause();
            return false;
        },
        static_cast<unsigned int>(rest.count()));
}

void PictureArea::askForFrame() {
    askedForFrame = Clock::now();
    queue_draw();
}

void PictureArea::refreshNow() {
    if (imageIsCurrent(get_width(), get_height())) return;
    if (!dueSince) dueSince = Clock::now();
    delayed.disconnect();
    askForFrame();
}

bool PictureArea::isBehind(std::chrono::duration<double> time) const {
    return get_mapped() && askedForFrame && Clock::now() > *askedForFrame + time;
}

void PictureArea::setFills(bool fills) {
    filling = fills;
    viewRevision.reset();
    image.reset();
    queue_draw();
}

FrameSize PictureArea::frameSize(int width, int height) const {
    return filling ? fillingSize(Picture(document), width, height) : frameSizeOf(document);
}

void PictureArea::setView(const Picture &picture, int width, int height) {
    pageView = fittedView(picture, width, height);
    viewRevision = document.revision;
    viewWidth = width;
    viewHeight = height;
}

const PageView &PictureArea::view() {
    const int width = get_width();
    const int height = get_height();
    if (viewRevision != document.revision || viewWidth != width || viewHeight != height)
        setView(Picture(document, frameSize(width, height)), width, height);
    return pageView;
}

void PictureArea::drawImage(int width, int height) {
    const int dots = get_scale_factor();
    image = Cairo::ImageSurface::create(Cairo::Surface::Format::RGB24, width * dots, height * dots);
    cairo_surface_set_device_scale(image->cobj(), dots, dots);
    imageRevision = document.revision;
    imageWidth = width;
    imageHeight = height;
    imageScale = dots;

    const Context cr(cairo_create(image->cobj()));
    cairo_set_source_rgb(cr.get(), 1, 1, 1);
    cairo_paint(cr.get());
    const Picture picture(document, frameSize(width, height));
    setView(picture, width, height);
    cairo_translate(cr.get(), pageView.corner.x, pageView.corner.y);
    cairo_scale(cr.get(), pageView.scale, pageView.scale);
    cairo_set_source_rgb(cr.get(), 0, 0, 0);
    constexpr double finest = 0.5; // of a dot
    picture.drawOn(cr.get(), finest / (pageView.scale * dots));
    requireDrawn(cairo_status(cr.get()));
}

void PictureArea::draw(const Cairo::RefPtr<Cairo::Context> &cr, int width, int height) {
    if (!imageIsCurrent(width, height)) {
        try {
            drawImage(width, height);
        } catch (const std::exception &exception) {
            log(LogLevel::error, '"' + document.name + "\": " + exception.what());
        }
        drewInFrame = true;
    }
    dueSince.reset();
    askedForFrame.reset();
    delayed.disconnect();
    cr->set_source(image, 0, 0);
    cr->paint();
    drawn.emit();
}

} // namespace plotwerk
