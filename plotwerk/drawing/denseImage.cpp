#include "plotwerk/drawing/denseImage.h"

#include "plotwerk/drawing/surface.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace plotwerk {

static constexpr double mostPixels = 50e6;

static cairo_surface_t *newBitmap(double width, double height) {
    return cairo_image_surface_create(CAIRO_FORMAT_A1, std::max(1, static_cast<int>(width)),
                                      std::max(1, static_cast<int>(height)));
}

static cairo_t *newContext(cairo_surface_t *surface, double scale, double left, double top) {
    cairo_t *cr = cairo_create(surface);
    cairo_scale(cr, scale, scale);
    cairo_translate(cr, -left, -top);
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
    return cr;
}

DenseImage::DenseImage(const Box &box_, double dpi)
    : box(box_),
      scale(
          std::min(dpi / 72, std::sqrt(mostPixels / std::max(1.0, box_.width() * box_.height())))),
      // with room at the right end of a row for a stamp's last words
      surface(newBitmap(std::ceil(box.width() * scale) + 128, std::ceil(box.height() * scale) + 2)),
      cr(newContext(surface, scale, box.left, box.top)),
      columns(cairo_image_surface_get_width(surface)),
      rows(cairo_image_surface_get_height(surface)),
      wordsPerRow(cairo_image_surface_get_stride(surface) / 4),
      bits(reinterpret_cast<uint32_t *>(cairo_image_surface_get_data(surface))) {
    requireDrawn(cairo_surface_status(surface));
}

DenseImage::~DenseImage() {
    cairo_destroy(cr);
    cairo_surface_destroy(surface);
}

// Rows of A1 images are 32-bit words that begin with the lowest bit on little-endian machines, with
// the highest on others.
static constexpr bool lowestBitFirst = std::endian::native == std::endian::little;

// The pixels of a row whose middle lies between left and right, in pixels.
void DenseImage::setBits(int y, double left, double right) {
    const int begin = static_cast<int>(std::ceil(std::max(left, 0.0) - 0.5));
    const int end = static_cast<int>(std::floor(std::min(right, columns - 1.0) + 0.5));
    if (begin >= end) return;
    uint32_t *row = rowAt(y);
    const int firstWord = begin / 32;
    const int lastWord = (end - 1) / 32;
    for (int word = firstWord; word <= lastWord; ++word) {
        uint32_t pixels = ~0U;
        const int skipped = word == firstWord ? begin % 32 : 0;
        const int unused = word == lastWord ? 31 - (end - 1) % 32 : 0;
        if constexpr (lowestBitFirst)
            pixels = pixels << skipped & pixels >> unused;
        else
            pixels = pixels >> skipped & pixels << unused;
        row[word] |= pixels;
    }
}

void DenseImage::addLine(const Point &from, const Point &to, double thickness) {
    const double half = std::max(thickness * scale, 1.0) / 2;
    const Point a{(from.x - box.left) * scale, (from.y - box.top) * scale};
    const Point b{(to.x - box.left) * scale, (to.y - box.top) * scale};
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    // unit vector along the line; any will do for a dot
    const double ux = length > 0 ? (b.x - a.x) / length : 1;
    const double uy = length > 0 ? (b.y - a.y) / length : 0;

    // in a row, the points within `half` of the line and no farther than `half` beyond its ends
    const double reach = half * (std::abs(ux) + std::abs(uy));
    const int top = static_cast<int>(std::max(std::floor(std::min(a.y, b.y) - reach), 0.0));
    const int bottom =
        static_cast<int>(std::min(std::ceil(std::max(a.y, b.y) + reach), rows - 1.0));
    const double across = std::abs(uy) > 1e-9 ? 1 / uy : 0;
    const double along = std::abs(ux) > 1e-9 ? 1 / ux : 0;
    for (int y = top; y <= bottom; ++y) {
        const double dy = y + 0.5 - a.y;
        double left = -1e9;
        double right = 1e9;
        if (across != 0) { // |(x - a.x) uy - dy ux| <= half
            const double middle = a.x + dy * ux * across;
            left = middle - half * std::abs(across);
            right = middle + half * std::abs(across);
        } else if (std::abs(dy) > half) {
            continue;
        }
        if (along != 0) { // -half <= (x - a.x) ux + dy uy <= length + half
            const double one = a.x + (-half - dy * uy) * along;
            const double other = a.x + (length + half - dy * uy) * along;
            left = std::max(left, std::min(one, other));
            right = std::min(right, std::max(one, other));
        } else if (dy * uy < -half || dy * uy > length + half) {
            continue;
        }
        setBits(y, left, right);
    }
}

// Sets the bits of a row in another row, shifted towards its end by so many bits.
static void orRow(uint32_t *to, const uint32_t *from, int words, unsigned shift) {
    for (int i = 0; i < words; ++i) {
        const uint64_t bits = from[i];
        if (bits == 0) continue;
        if constexpr (lowestBitFirst) {
            const uint64_t shifted = bits << shift;
            to[i] |= static_cast<uint32_t>(shifted);
            if (shift > 0) to[i + 1] |= static_cast<uint32_t>(shifted >> 32);
        } else {
            const uint64_t shifted = bits << (32 - shift);
            to[i] |= static_cast<uint32_t>(shifted >> 32);
            if (shift > 0) to[i + 1] |= static_cast<uint32_t>(shifted);
        }
    }
}

void DenseImage::stamp(const std::vector<Point> &points, double radius,
                       const std::function<void(cairo_t *)> &draw) {
    const int half = static_cast<int>(std::ceil(radius * scale)) + 1;
    cairo_surface_t *stamp = newBitmap(2 * half + 1, 2 * half + 1);
    // the paper's (0, 0) in the middle of the stamp's middle pixel
    const double middle = (half + 0.5) / scale;
    cairo_t *pen = newContext(stamp, scale, -middle, -middle);
    draw(pen);
    cairo_destroy(pen);
    cairo_surface_flush(stamp);

    const int stampStride = cairo_image_surface_get_stride(stamp);
    const unsigned char *stampBits = cairo_image_surface_get_data(stamp);
    const int words = stampStride / 4;

    for (const Point &p : points) {
        const int left = static_cast<int>(std::floor((p.x - box.left) * scale)) - half;
        const int top = static_cast<int>(std::floor((p.y - box.top) * scale)) - half;
        // the row's words and one more for the shift
        if (left < 0 || left / 32 + words + 1 > wordsPerRow || top < 0 || top + 2 * half + 1 > rows)
            continue;
        for (int row = 0; row <= 2 * half; ++row)
            orRow(rowAt(top + row) + left / 32,
                  reinterpret_cast<const uint32_t *>(stampBits + row * stampStride), words,
                  static_cast<unsigned>(left % 32));
    }
    cairo_surface_destroy(stamp);
}

void DenseImage::paintOn(cairo_t *target) const {
    cairo_surface_flush(surface);
    cairo_surface_mark_dirty(surface); // for bits that were set without the context
    cairo_save(target);
    cairo_translate(target, box.left, box.top);
    cairo_scale(target, 1 / scale, 1 / scale);
    cairo_mask_surface(target, surface, 0, 0);
    cairo_restore(target);
}

} // namespace plotwerk
