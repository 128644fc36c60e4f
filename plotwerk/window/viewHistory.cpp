#include "plotwerk/window/viewHistory.h"

#include <utility>

namespace plotwerk {

static constexpr std::size_t longest = 100;

View viewOf(const Document &document) {
    View view;
    for (std::size_t i = 0; i < view.size(); ++i) view[i] = document.axes[i].range;
    return view;
}

static bool isSame(double a, double b) {
    return a == b || (a != a && b != b);
}

static bool isSame(const View &a, const View &b) {
    for (std::size_t i = 0; i < a.size(); ++i)
        if (!isSame(a[i].min, b[i].min) || !isSame(a[i].max, b[i].max)) return false;
    return true;
}

void ViewHistory::leave(const View &view) {
    settle(view);
    left = view;
}

void ViewHistory::settle(const View &present) {
    if (!left || isSame(*left, present)) return;
    later.clear();
    earlier.push_back(*std::exchange(left, std::nullopt));
    if (earlier.size() > longest) earlier.erase(earlier.begin());
}

// The last of those views that isn't the present one.
static std::optional<View> step(std::vector<View> &from, std::vector<View> &to,
                                const View &present) {
    while (!from.empty() && isSame(from.back(), present)) from.pop_back();
    if (from.empty()) return std::nullopt;
    const View view = from.back();
    from.pop_back();
    to.push_back(present);
    return view;
}

std::optional<View> ViewHistory::back(const View &present) {
    settle(present);
    left.reset();
    return step(earlier, later, present);
}

std::optional<View> ViewHistory::forward(const View &present) {
    settle(present);
    left.reset();
    return step(later, earlier, present);
}

bool ViewHistory::hasEarlier(const View &present) {
    settle(present);
    return !earlier.empty();
}

bool ViewHistory::hasLater(const View &present) {
    settle(present);
    return !later.empty();
}

} // namespace plotwerk
