#include "plotwerk/drawing/curvePath.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace plotwerk {

double lengthOf(std::span<const Point> path) {
    double length = 0;
    for (std::size_t i = 1; i < path.size(); ++i) {
        if (isBreak(path[i]) || isBreak(path[i - 1])) continue;
        const double dx = path[i].x - path[i - 1].x;
        const double dy = path[i].y - path[i - 1].y;
        length += std::sqrt(dx * dx + dy * dy); // of paths on paper: no overflow
    }
    return length;
}

Path steppedPath(const Path &path) {
    Path stepped;
    stepped.reserve(2 * path.size());
    for (const Point &p : path) {
        if (!stepped.empty() && !isBreak(stepped.back()) && !isBreak(p))
            stepped.push_back({p.x, stepped.back().y});
        stepped.push_back(p);
    }
    return stepped;
}

// Cuts the line from a to b at the box (Liang and Barsky). False if none of it is inside.
static bool clipLine(Point &a, Point &b, const Box &box) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    double begin = 0;
    double end = 1;
    const auto cut = [&](double direction, double distance) {
        if (direction == 0) return distance >= 0;
        const double t = distance / direction;
        if (direction < 0)
            begin = std::max(begin, t);
        else
            end = std::min(end, t);
        return begin <= end;
    };
    if (!cut(-dx, a.x - box.left) || !cut(dx, box.right - a.x) || !cut(-dy, a.y - box.top) ||
        !cut(dy, box.bottom - a.y))
        return false;
    const Point from = a;
    if (begin > 0) a = {from.x + begin * dx, from.y + begin * dy};
    if (end < 1) b = {from.x + end * dx, from.y + end * dy};
    return true;
}

Path clippedPath(const Path &path, const Box &box) {
    Path clipped;
    clipped.reserve(path.size());
    const auto breakPath = [&] {
        if (!clipped.empty() && !isBreak(clipped.back())) clipped.push_back(pathBreak);
    };
    for (std::size_t i = 0; i < path.size(); ++i) {
        const Point &p = path[i];
        if (isBreak(p)) {
            breakPath();
            continue;
        }
        const bool inside = box.contains(p);
        const bool first = i == 0 || isBreak(path[i - 1]);
        if (first) {
            if (inside) clipped.push_back(p);
            continue;
        }
        const bool joined = !clipped.empty() && !isBreak(clipped.back());
        if (inside && joined) {
            clipped.push_back(p);
            continue;
        }
        Point a = path[i - 1];
        Point b = p;
        if (clipLine(a, b, box)) {
            if (!joined) clipped.push_back(a);
            clipped.push_back(b);
        }
        if (!inside) breakPath();
    }
    return clipped;
}

// The part of a line between two x, with its y cut at top and bottom, where it goes on level.
static void addLimitedLine(Path &ring, Point a, Point b, const Box &box) {
    if (std::max(a.x, b.x) < box.left || std::min(a.x, b.x) > box.right) return;
    const auto yAt = [&](double x) { return a.y + (b.y - a.y) * ((x - a.x) / (b.x - a.x)); };
    const auto withinX = [&](const Point &p) {
        const double x = std::clamp(p.x, box.left, box.right);
        return x == p.x ? p : Point{x, yAt(x)};
    };
    const Point from = withinX(a);
    const Point to = withinX(b);
    const auto add = [&](const Point &p) {
        const Point within{p.x, std::clamp(p.y, box.top, box.bottom)};
        if (ring.empty() || ring.back().x != within.x || ring.back().y != within.y)
            ring.push_back(within);
    };
    add(from);
    double crossings[2] = {box.top, box.bottom};
    if (from.y > to.y) std::swap(crossings[0], crossings[1]);
    for (const double y : crossings)
        if ((from.y < y) != (to.y < y))
            add({from.x + (to.x - from.x) * ((y - from.y) / (to.y - from.y)), y});
    add(to);
}

std::vector<Path> areasBetween(const Path &path, double base, const Box &box) {
    const double level = std::clamp(base, box.top, box.bottom);
    std::vector<Path> areas;
    Path ring;
    const auto close = [&] {
        if (ring.size() > 1) {
            ring.insert(ring.begin(), {ring.front().x, level});
            ring.push_back({ring.back().x, level});
            areas.push_back(std::move(ring));
        }
        ring.clear();
    };
    for (std::size_t i = 1; i < path.size(); ++i) {
        if (isBreak(path[i]))
            close();
        else if (!isBreak(path[i - 1]))
            addLimitedLine(ring, path[i - 1], path[i], box);
    }
    close();
    return areas;
}

void ColumnExtremes::beginColumn(const Point &p, double place) {
    endColumn();
    if (isBreak(p)) {
        if (!kept.empty() && !isBreak(kept.back())) kept.push_back(pathBreak);
        return;
    }
    column = place;
    first = lowest = highest = last = {p, count};
}

void ColumnExtremes::endColumn() {
    if (std::isnan(column)) return;
    const auto &[earlier, later] = std::minmax(
        lowest, highest, [](const Placed &a, const Placed &b) { return a.index < b.index; });
    std::size_t previous = 0;
    for (const Placed &each : {first, earlier, later, last}) {
        if (each.index != previous) kept.push_back(each.p);
        previous = each.index;
    }
    column = pathBreak.x;
}

Path ColumnExtremes::take() {
    endColumn();
    return std::move(kept);
}

static Path columnExtremes(const Path &path, double width) {
    ColumnExtremes extremes(width);
    for (const Point &p : path) extremes.add(p);
    return extremes.take();
}

namespace {

// The directions from a point in which others have been seen, each with a tolerance.
class Cone {
  public:
    Cone(const Point &tip, double tolerance_) : anchor(tip), tolerance(tolerance_) {}

    // Takes in the next point, if the straight line to it passes all earlier ones within the
    // tolerance and it is farther on than they are.
    bool takes(const Point &p) {
        const double dx = p.x - anchor.x;
        const double dy = p.y - anchor.y;
        if (farthest == 0) {
            const double distance = std::hypot(dx, dy);
            if (distance <= tolerance) return true;
            directionX = dx / distance;
            directionY = dy / distance;
        }
        const double along = dx * directionX + dy * directionY;
        if (along < farthest || along <= 0) return false;
        const double across = dy * directionX - dx * directionY;
        if (across < low * along || across > high * along) return false;
        farthest = along;
        low = std::max(low, (across - tolerance) / along);
        high = std::min(high, (across + tolerance) / along);
        return true;
    }

  private:
    Point anchor;
    double tolerance;
    double directionX = 0;
    double directionY = 0;
    double farthest = 0; // 0 as long as there is no direction
    double low = -std::numeric_limits<double>::infinity();
    double high = std::numeric_limits<double>::infinity();
};

} // namespace

// Leaves out points that lie near the line between those kept.
static Path straightened(const Path &path, double tolerance) {
    Path kept;
    Cone cone(pathBreak, tolerance);
    for (std::size_t i = 0; i < path.size(); ++i) {
        const bool first = i == 0 || isBreak(path[i - 1]);
        const bool last = i + 1 == path.size() || isBreak(path[i + 1]);
        if (isBreak(path[i]) || first) {
            kept.push_back(path[i]);
            cone = Cone(path[i], tolerance);
            continue;
        }
        if (!cone.takes(path[i])) {
            kept.push_back(path[i - 1]);
            cone = Cone(path[i - 1], tolerance);
            cone.takes(path[i]);
        }
        if (last) kept.push_back(path[i]);
    }
    return kept;
}

Path reducedPath(const Path &path, double resolution) {
    return straightened(columnExtremes(path, resolution), resolution / 2);
}

} // namespace plotwerk
