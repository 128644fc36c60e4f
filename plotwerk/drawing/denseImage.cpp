#include "plotwerk/drawing/denseImage.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace plotwerk {

static constexpr double finest = 600 / 72.0; // pixels per point
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

DenseImage::DenseImage(const Box &box_)
    : box(box_),
      scale(std::min(finest, std::sqrt(mostPixels / std::max(1.0, box_.width() * box_.height())))),
      // with room at the right end of a row for a stamp's last words
      surface(newBitmap(std::ceil(box.width() * scale) + 128, std::ceil(box.height() * scale) + 2)),
      cr(newContext(surface, scale, box.left, box.top)) {}

DenseImage::~DenseImage() {
    cairo_destroy(cr);
    cairo_surface_destroy(surface);
}

// Sets the bits of a row of 32-bit words in another row, shifted up by so many bits. Rows of A1
// images begin with the lowest bit on little-endian machines, with the highest on others.
static void orRow(uint32_t *to, const uint32_t *from, int words, unsigned shift) {
    for (int i = 0; i < words; ++i) {
        const uint64_t bits = from[i];
        if (bits == 0) continue;
        if constexpr (std::endian::native == std::endian::little) {
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
    cairo_surface_flush(surface);

    const int stampStride = cairo_image_surface_get_stride(stamp);
    const int stride = cairo_image_surface_get_stride(surface);
    const int height = cairo_image_surface_get_height(surface);
    const unsigned char *stampBits = cairo_image_surface_get_data(stamp);
    unsigned char *bits = cairo_image_surface_get_data(surface);
    const int words = stampStride / 4;

    for (const Point &p : points) {
        const int left = static_cast<int>(std::floor((p.x - box.left) * scale)) - half;
        const int top = static_cast<int>(std::floor((p.y - box.top) * scale)) - half;
        // the row's words and one more for the shift
        if (left < 0 || (left / 32 + words + 1) * 4 > stride || top < 0 ||
            top + 2 * half + 1 > height)
            continue;
        for (int row = 0; row <= 2 * half; ++row)
            orRow(reinterpret_cast<uint32_t *>(bits + static_cast<size_t>(top + row) * stride) +
                      left / 32,
                  reinterpret_cast<const uint32_t *>(stampBits + row * stampStride), words,
                  static_cast<unsigned>(left % 32));
    }
    cairo_surface_mark_dirty(surface);
    cairo_surface_destroy(stamp);
}

void DenseImage::paintOn(cairo_t *target) const {
    cairo_surface_flush(surface);
    cairo_save(target);
    cairo_translate(target, box.left, box.top);
    cairo_scale(target, 1 / scale, 1 / scale);
    cairo_mask_surface(target, surface, 0, 0);
    cairo_restore(target);
}

} // namespace plotwerk
