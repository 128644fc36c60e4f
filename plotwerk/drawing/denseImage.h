// denseImage.h - a one-colour image in which what is too dense for a vector picture is drawn.
//
// Hundreds of thousands of lines or symbols make a file of many megabytes that no printer can tell
// from an image of 600 dpi. The image has one bit per pixel, so that its size has a bound.
#ifndef PLOTWERK_DRAWING_DENSEIMAGE_H
#define PLOTWERK_DRAWING_DENSEIMAGE_H

#include "plotwerk/drawing/curvePath.h"
#include "plotwerk/drawing/surface.h"

#include <cairo.h>
#include <cstdint>
#include <functional>
#include <vector>

namespace plotwerk {

constexpr double finestDpi = 600;

// The resolution for lines of that length in all, in points: kilometres of line leave nothing but
// black.
inline double dpiFor(double length) {
    return length > 3e6 ? finestDpi / 2 : finestDpi;
}

class DenseImage {
  public:
    // A blank image of that part of the paper, as fine as 50 megapixels allow.
    DenseImage(const Box &box, double dpi);

    // For a screen, where nothing finer than the resolution, in points, is seen. Four pixels are
    // painted as one that is shaded. The image begins at a whole dot of the context, so that with
    // half a dot as resolution what is painted are the screen's dots.
    static DenseImage onScreen(cairo_t *cr, const Box &box, double resolution);

    // A straight line with square ends, in the paper's coordinates; at least a pixel wide.
    void addLine(const Point &from, const Point &to, double thickness);

    // Fills what any of the closed rings winds about, in the paper's coordinates, within the box.
    // Takes time for each row of each ring and what is wound about there, not for crossings of
    // lines.
    void fill(const std::vector<Path> &rings);

    // Repeats what `draw` draws around (0, 0), within `radius`, at each of the points.
    void stamp(const std::vector<Point> &points, double radius,
               const std::function<void(cairo_t *)> &draw);

    // Paints the pixels in the current colour of another context.
    void paintOn(cairo_t *target) const;

  private:
    Point pixelAt(const Point &p) const {
        return {(p.x - box.left) * scale, (p.y - box.top) * scale};
    }
    // Of a stamp: neighbours in a row that are set.
    struct Run {
        int row;
        int begin;
        int length;
    };
    static std::vector<Run> runsByLength(const std::vector<std::uint32_t> &stamp, int words);
    void stampAll(const std::vector<std::uint64_t> &places, const std::vector<Run> &runs);
    void setBits(int y, int x, std::uint64_t pixels);
    void setRow(int y, double left, double right);
    void fillRow(int y, std::vector<int> &changes, std::vector<std::uint64_t> &changed,
                 std::size_t firstWord, std::size_t endWord);
    Surface halved() const;
    Surface mask() const;

    Box box;
    double scale; // pixels per point
    int columns;
    int rows;
    bool shaded = false; // four pixels are painted as one
    std::size_t wordsPerRow;
    std::vector<std::uint64_t> bits; // the leftmost pixel of a word is its lowest bit
};

} // namespace plotwerk

#endif
