// plane.h - geometry of the plane: interpolation, lines, distances, angles, polygons.
//
// A point or vector passed by pointer is x, y. A line passed by pointer is x, y of one of its
// points, then x, y of its direction. A polygon is x0, y0, x1, y1, ... of its n vertices, its
// first vertex repeated at the end or not. Angles are in radians. NaN among the numbers that a
// result is made of gives NaN unless said otherwise.
#ifndef PLW_UTIL_GEOMETRY_PLANE_H
#define PLW_UTIL_GEOMETRY_PLANE_H

namespace plw {

// The point (*x, *y) at the fraction t of the way from (x0, y0) to (x1, y1); any t.
void linInterpol(double x0, double y0, double x1, double y1, double t, double *x, double *y);

// y at x of the line through (x0, y0) and (x1, y1). If one of y0, y1 is NaN, the other stands for
// it. (y0 + y1) / 2 for every x if x0 = x1.
//   (1, 2, 3, 6, 2) -> 4   (1, NaN, 3, 6, 2) -> 6   (1, 2, 1, 4, 7) -> 3
double linInterpolx(double x0, double y0, double x1, double y1, double x);

// Where two lines cross: at the point of l1 plus *t1 times its direction, and at that of l2 plus
// *t2 times its direction. *parallel is 0 then; for parallel lines it is 1, and *t1 and *t2 are
// left as they are.
void LineCross(const double *l1, const double *l2, double *t1, double *t2, char *parallel);

// Squared distance of (px, py) from the infinite line through (ax, ay) and (bx, by), after x is
// scaled by sx and y by sy. NaN if the scaled A and B are the same point.
//   (2, 1, 0, 0, 1, 0, 1, 1) -> 1
double DistPointLineQ(double px, double py, double ax, double ay, double bx, double by, double sx,
                      double sy);

// Squared distance of (px, py) from the segment between (ax, ay) and (bx, by), after x is scaled by
// sx and y by sy. NaN if the scaled P, A and B are all the same point.
//   (2, 0, 0, 0, 1, 0, 1, 1) -> 1   (0.5, 1, 0, 0, 1, 0, 1, 1) -> 1   (2, 0, 1, 0, 1, 0, 1, 1) -> 1
double DistPointPathQ(double px, double py, double ax, double ay, double bx, double by, double sx,
                      double sy);

// The angle from (x1, y1) clockwise to (x2, y2), in -pi/2 .. 3pi/2. NaN for a vector of length 0,
// and where rounding takes the sine beyond 1: for about a quarter of all pairs of exactly
// perpendicular vectors.
//   (1, 0, 0, 1) -> -pi/2   (0, 1, 1, 0) -> pi/2   (1, 0, -1, 0) -> pi
double vectorAngle2D(double x1, double y1, double x2, double y2);

// Rotates (*x, *y) around the origin in place, counter-clockwise.
void rotate2D(double *x, double *y, double angle);

// The cross product x1 * y2 - y1 * x2.
double Vec2DxMul(double x1, double y1, double x2, double y2);

// 1 if (px, py) lies inside the polygon, in whichever orientation, and 0 if outside. -1 if that is
// undecided: wound around more than once, or NaN. Any of the three on the boundary. 0 for n < 1.
//   {0,0, 1,0, 1,1, 0,1}:   (0.5, 0.5) -> 1   (2, 2) -> 0
int isPointInPoly(const double *poly, int n, double px, double py);

// 1 if p lies in the triangle a, b, c; its edges and corners are inside. 0 for a degenerate
// triangle and for NaN.
int pointInTriangle(const double *a, const double *b, const double *c, const double *p);

// Signed area: positive if the vertices run counter-clockwise with y upwards. 0 for n < 1.
double areaOfPoly(const double *poly, int n);

} // namespace plw

#endif
