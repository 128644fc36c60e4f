#include "plotwerk/drawing/denseImage.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <span>
#include <utility>

namespace plotwerk {

static constexpr double mostPixels = 50e6;

DenseImage::DenseImage(const Box &box_, double dpi)
    : box(box_),
      scale(
          std::min(dpi / 72, std::sqrt(mostPixels / std::max(1.0, box_.width() * box_.height())))),
      // with room at the right end of a row for a stamp's last words
      columns(static_cast<int>(box.width() * scale) + 128),
      rows(static_cast<int>(box.height() * scale) + 2),
      wordsPerRow(static_cast<std::size_t>(columns) / 64 + 2),
      bits(wordsPerRow * static_cast<std::size_t>(rows)) {
}

DenseImage DenseImage::onScreen(cairo_t *cr, const Box &box, double resolution) {
    Box aligned = box;
    cairo_user_to_device(cr, &aligned.left, &aligned.top);
    aligned.left = std::floor(aligned.left);
    aligned.top = std::floor(aligned.top);
    cairo_device_to_user(cr, &aligned.left, &aligned.top);
    DenseImage image(aligned, 72 / resolution);
    image.shaded = true;
    return image;
}

// The first pixel whose middle lies at or beyond that place, from 0 on.
static int pixelFrom(double place) {
    constexpr double half = 0.5;
    return static_cast<int>(std::max(place, 0.0) + half);
}

// The pixels from x on that are the word's set bits. The row has a word beyond the one with x.
void DenseImage::setBits(int y, int x, std::uint64_t pixels) {
    std::uint64_t *word =
        &bits[static_cast<std::size_t>(y) * wordsPerRow + static_cast<std::size_t>(x / 64)];
    const int shift = x % 64;
    word[0] |= pixels << shift;
    word[1] |= pixels >> 1 >> (63 - shift);
}

// The pixels of a row whose middle lies between left and right, in pixels.
void DenseImage::setRow(int y, double left, double right) {
    const int begin = pixelFrom(std::min(left, columns - 1.0));
    const int end = pixelFrom(std::min(right, columns - 1.0));
    for (int x = begin; x < end; x += 64)
        setBits(y, x, ~std::uint64_t{0} >> (64 - std::min(end - x, 64)));
}

void DenseImage::addLine(const Point &from, const Point &to, double thickness) {
    const double half = std::max(thickness * scale, 1.0) / 2;
    const Point a = pixelAt(from);
    const Point b = pixelAt(to);
    const double length = std::sqrt((b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y));
    // unit vector along the line, any for a dot; slanted a little where it is level or upright, so
    // that every row crosses all four sides of the line
    const auto slanted = [](double part) {
        return std::copysign(std::max(std::abs(part), 1e-9), part);
    };
    const double ux = slanted(length > 0 ? (b.x - a.x) / length : 1);
    const double uy = slanted(length > 0 ? (b.y - a.y) / length : 0);

    // a row's points within `half` of the line: those between its long sides, |dx uy - dy ux| <=
    // half, and between its ends, -half <= dx ux + dy uy <= length + half
    const double slope = ux / uy;
    const double middle = a.x + length / 2 / ux;
    const double sides = half / std::abs(uy);
    const double ends = (length / 2 + half) / std::abs(ux);
    const double reach = half * (std::abs(ux) + std::abs(uy));
    const int top = static_cast<int>(std::max(std::min(a.y, b.y) - reach, 0.0));
    const int bottom = static_cast<int>(std::min(std::max(a.y, b.y) + reach, rows - 1.0));
    for (int y = top; y <= bottom; ++y) {
        const double dy = y + 0.5 - a.y;
        const double onLine = a.x + dy * slope;
        const double betweenEnds = middle - dy / slope;
        setRow(y, std::max(onLine - sides, betweenEnds - ends),
               std::min(onLine + sides, betweenEnds + ends));
    }
}

namespace {

// A line of a ring, downwards: it changes the winding number of the pixels at its right.
struct Edge {
    int begin; // rows
    int end;
    Point top;
    double slope;
    int change;
};

} // namespace

// Sorted by their first rows.
static std::vector<Edge> edgesOf(const Path &ring, int rows) {
    std::vector<Edge> edges;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        Point a = ring[i];
        Point b = ring[i + 1 < ring.size() ? i + 1 : 0];
        const int change = a.y < b.y ? 1 : -1;
        if (change < 0) std::swap(a, b);
        const int begin = pixelFrom(std::min(a.y, 1.0 * rows));
        const int end = pixelFrom(std::min(b.y, 1.0 * rows));
        if (begin < end) edges.push_back({begin, end, a, (b.x - a.x) / (b.y - a.y), change});
    }
    std::ranges::sort(edges, {}, &Edge::begin);
    return edges;
}

void DenseImage::fill(const std::vector<Path> &rings) {
    // in one row by how much the winding number of a pixel differs from that of its left neighbour,
    // and where it was changed
    std::vector<int> changes(static_cast<std::size_t>(columns));
    std::vector<std::uint64_t> changed(changes.size() / 64 + 1);
    std::vector<Edge> active; // none behind a ring's end
    for (const Path &ring : rings) {
        Path pixels(ring.size());
        std::ranges::transform(ring, pixels.begin(), [&](const Point &p) { return pixelAt(p); });
        const std::vector<Edge> edges = edgesOf(pixels, rows);
        auto next = edges.begin();
        for (int y = 0; next != edges.end() || !active.empty(); ++y) {
            if (active.empty()) y = next->begin;
            for (; next != edges.end() && next->begin == y; ++next) active.push_back(*next);
            std::size_t firstWord = changed.size();
            std::size_t endWord = 0;
            for (const Edge &edge : active) {
                const double x = edge.top.x + (y + 0.5 - edge.top.y) * edge.slope;
                const auto column = static_cast<std::size_t>(pixelFrom(std::min(x, columns - 1.0)));
                changes[column] += edge.change;
                changed[column / 64] |= std::uint64_t{1} << column % 64;
                firstWord = std::min(firstWord, column / 64);
                endWord = std::max(endWord, column / 64 + 1);
            }
            fillRow(y, changes, changed, firstWord, endWord);
            std::erase_if(active, [y](const Edge &edge) { return edge.end == y + 1; });
        }
    }
}

// Sets the pixels of a row whose winding number isn't 0, and clears the changes, which lie in the
// words from the first one on to the end.
void DenseImage::fillRow(int y, std::vector<int> &changes, std::vector<std::uint64_t> &changed,
                         std::size_t firstWord, std::size_t endWord) {
    int winding = 0;
    int begin = 0;
    for (std::size_t word = firstWord; word < endWord; ++word)
        for (; changed[word] != 0; changed[word] &= changed[word] - 1) {
            const int x = static_cast<int>(64 * word) + std::countr_zero(changed[word]);
            if (winding != 0) setRow(y, begin, x);
            winding += std::exchange(changes[static_cast<std::size_t>(x)], 0);
            begin = x;
        }
}

// Words of one-bit images begin with the lowest bit on little-endian machines, with the highest on
// others.
static std::uint32_t lowestBitFirst(std::uint32_t word) {
    if constexpr (std::endian::native == std::endian::little) return word;
    std::uint32_t turned = 0;
    for (int bit = 0; bit < 32; ++bit) turned |= (word >> bit & 1) << (31 - bit);
    return turned;
}

// Sets the pixels that lie that far to the right of set ones; `to` may be the row itself.
static void orShifted(std::span<const std::uint64_t> row, int distance, std::uint64_t *to) {
    const auto words = static_cast<std::size_t>(distance / 64);
    const int shift = distance % 64;
    for (std::size_t i = row.size(); i-- > words;) {
        const std::uint64_t carried = i > words ? row[i - words - 1] >> 1 >> (63 - shift) : 0;
        to[i] |= row[i - words] << shift | carried;
    }
}

std::vector<DenseImage::Run> DenseImage::runsByLength(const std::vector<std::uint32_t> &stamp,
                                                      int words) {
    std::vector<Run> runs;
    const int height = static_cast<int>(stamp.size()) / words;
    for (int y = 0; y < height; ++y) {
        const std::uint32_t *row = stamp.data() + std::ptrdiff_t{y} * words;
        bool inRun = false;
        for (int x = 0; x < 32 * words; ++x) {
            const bool set = row[x / 32] >> x % 32 & 1;
            if (set && !inRun) runs.push_back({y, x, 0});
            if (set) ++runs.back().length;
            inRun = set;
        }
    }
    std::ranges::sort(runs, {}, &Run::length);
    return runs;
}

void DenseImage::stampAll(const std::vector<std::uint64_t> &places, const std::vector<Run> &runs) {
    std::vector<std::uint64_t> spread(wordsPerRow);
    for (int y = 0; y < rows; ++y) {
        const auto row = places.begin() + static_cast<std::ptrdiff_t>(y * wordsPerRow);
        std::copy_n(row, wordsPerRow, spread.begin());
        if (std::ranges::all_of(spread, [](std::uint64_t word) { return word == 0; })) continue;
        int length = 1; // to which each place is spread
        for (const Run &run : runs) {
            while (length < run.length) {
                const int step = std::min(length, run.length - length);
                orShifted(spread, step, spread.data());
                length += step;
            }
            orShifted(spread, run.begin,
                      &bits[static_cast<std::size_t>(y + run.row) * wordsPerRow]);
        }
    }
}

void DenseImage::stamp(const std::vector<Point> &points, double radius,
                       const std::function<void(cairo_t *)> &draw) {
    const int half = static_cast<int>(std::ceil(radius * scale)) + 1;
    const int size = 2 * half + 1;
    const Surface stamp(cairo_image_surface_create(CAIRO_FORMAT_A1, size, size));
    const Context pen(cairo_create(stamp.get()));
    cairo_set_antialias(pen.get(), CAIRO_ANTIALIAS_NONE);
    // the paper's (0, 0) in the middle of the stamp's middle pixel
    cairo_translate(pen.get(), half + 0.5, half + 0.5);
    cairo_scale(pen.get(), scale, scale);
    draw(pen.get());
    requireDrawn(cairo_status(pen.get()));
    cairo_surface_flush(stamp.get());

    const int words = cairo_image_surface_get_stride(stamp.get()) / 4;
    std::vector<std::uint32_t> stampBits(static_cast<std::size_t>(words) *
                                         static_cast<std::size_t>(size));
    std::memcpy(stampBits.data(), cairo_image_surface_get_data(stamp.get()), 4 * stampBits.size());
    for (std::uint32_t &word : stampBits) word = lowestBitFirst(word);

    // Many stamps are faster set by rows: all that begin in a row at once.
    const bool byRows = points.size() * static_cast<std::size_t>(words) > 2 * bits.size();
    std::vector<std::uint64_t> places(byRows ? bits.size() : 0); // of their upper left corners
    for (const Point &p : points) {
        const Point pixel = pixelAt(p);
        const int left = static_cast<int>(std::floor(pixel.x)) - half;
        const int top = static_cast<int>(std::floor(pixel.y)) - half;
        if (left < 0 || left + 32 * words > columns || top < 0 || top + size > rows) continue;
        if (byRows) {
            places[static_cast<std::size_t>(top) * wordsPerRow +
                   static_cast<std::size_t>(left / 64)] |= std::uint64_t{1} << left % 64;
            continue;
        }
        const std::uint32_t *word = stampBits.data();
        for (int y = top; y < top + size; ++y)
            for (int x = left; x < left + 32 * words; x += 32) setBits(y, x, *word++);
    }
    if (byRows) stampAll(places, runsByLength(stampBits, words));
}

// As cairo_mask_surface at (0, 0), which cairo 1.16 misplaces in SVG: with an image in colour.
static void paintThrough(cairo_t *target, cairo_surface_t *mask) {
    const Surface coloured(cairo_surface_create_similar_image(
        mask, CAIRO_FORMAT_ARGB32, cairo_image_surface_get_width(mask),
        cairo_image_surface_get_height(mask)));
    const Context cr(cairo_create(coloured.get()));
    cairo_set_source(cr.get(), cairo_get_source(target));
    cairo_mask_surface(cr.get(), mask, 0, 0);
    requireDrawn(cairo_status(cr.get()));
    cairo_set_source_surface(target, coloured.get(), 0, 0);
    cairo_paint(target);
}

// As an image of half the size, with the part of each four pixels that is set.
Surface DenseImage::halved() const {
    const int width = columns / 2;
    const int height = rows / 2;
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_A8, width, height));
    requireDrawn(cairo_surface_status(surface.get()));
    cairo_surface_flush(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    for (int y = 0; y < height; ++y) {
        unsigned char *dots =
            cairo_image_surface_get_data(surface.get()) + std::ptrdiff_t{y} * stride;
        const std::uint64_t *upper = &bits[static_cast<std::size_t>(2 * y) * wordsPerRow];
        const std::uint64_t *lower = upper + wordsPerRow;
        for (int x = 0; x < width; ++x) {
            const int shift = 2 * x % 64;
            const std::uint64_t four =
                (upper[x / 32] >> shift & 3) << 2 | (lower[x / 32] >> shift & 3);
            dots[x] = static_cast<unsigned char>(std::popcount(four) * 255 / 4);
        }
    }
    cairo_surface_mark_dirty(surface.get());
    return surface;
}

// As an image of one bit per pixel.
Surface DenseImage::mask() const {
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_A1, columns, rows));
    requireDrawn(cairo_surface_status(surface.get()));
    cairo_surface_flush(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    for (int y = 0; y < rows; ++y) {
        unsigned char *row =
            cairo_image_surface_get_data(surface.get()) + std::ptrdiff_t{y} * stride;
        for (int i = 0; i < stride / 4; ++i) {
            const std::uint64_t pair = bits[static_cast<std::size_t>(y) * wordsPerRow + i / 2];
            const std::uint32_t word =
                lowestBitFirst(static_cast<std::uint32_t>(pair >> 32 * (i % 2)));
            std::memcpy(row + std::ptrdiff_t{4} * i, &word, 4);
        }
    }
    cairo_surface_mark_dirty(surface.get());
    return surface;
}

void DenseImage::paintOn(cairo_t *target) const {
    const Surface surface = shaded ? halved() : mask();
    const double pixel = (shaded ? 2 : 1) / scale;
    cairo_save(target);
    cairo_translate(target, box.left, box.top);
    cairo_scale(target, pixel, pixel);
    if (cairo_surface_get_type(cairo_get_target(target)) == CAIRO_SURFACE_TYPE_SVG)
        paintThrough(target, surface.get());
    else
        cairo_mask_surface(target, surface.get(), 0, 0);
    cairo_restore(target);
}

} // namespace plotwerk
