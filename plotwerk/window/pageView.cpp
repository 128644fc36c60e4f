#include "plotwerk/window/pageView.h"

#include <algorithm>

namespace plotwerk {

PageView fittedView(const Picture &picture, int width, int height) {
    PageView view;
    view.frame = picture.scaledFrame();
    view.page = picture.page();
    view.scale = std::min(width / view.page.width(), height / view.page.height());
    view.corner = {(width - view.scale * view.page.width()) / 2,
                   (height - view.scale * view.page.height()) / 2};
    return view;
}

} // namespace plotwerk
