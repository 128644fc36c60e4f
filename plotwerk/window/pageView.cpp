#include "plotwerk/window/pageView.h"

#include <algorithm>

namespace plotwerk {

static constexpr double margin = 8; // around the page, in pixels

PageView fittedView(const Picture &picture, int width, int height) {
    PageView view;
    view.frame = picture.scaledFrame();
    view.page = picture.page();
    view.scale = std::max(0.01, std::min((width - 2 * margin) / view.page.width(),
                                         (height - 2 * margin) / view.page.height()));
    view.corner = {(width - view.scale * view.page.width()) / 2,
                   (height - view.scale * view.page.height()) / 2};
    return view;
}

FrameSize fillingSize(const Picture &picture, int width, int height) {
    const PageView view = fittedView(picture, width, height);
    const auto longer = [&](double length, double page, int pixels) {
        return length + std::max(0.0, (pixels - 2 * margin) / view.scale - page);
    };
    return {longer(view.frame.width, view.page.width(), width),
            longer(view.frame.height, view.page.height(), height)};
}

} // namespace plotwerk
