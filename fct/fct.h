// fct.h - a sampled function: n samples (t, y), joined by straight lines.
//
// Sample positions t ascend, with equal neighbours and NaN gaps allowed. A NaN ordinate marks a
// missing value. Units are the caller's. Whoever gets a new record frees it with freeFct.
//
// A record owns its two arrays unless it is linked. A fixed-length record is incomplete until n
// equals size, and an incomplete record is refused by every search, evaluation and integral: the
// process ends with "ERROR in ROUTINE: function incomplete" and n. Searches begin at lastIndex and
// move it, so ascending positions cost constant time, while an integral over descending ones walks
// from the first sample each time. Reading a record changes it, and two routines keep such an index
// of their own: nothing here may be used from two threads at once.
//
// Positions that are large against their spacing cost digits: with a spacing of 1e-3 evalFct errs
// at its own samples by 1e-10 of their change at t = 1e3, but by 1e-4 at t = 1.7e9.
#ifndef PLW_FCT_FCT_H
#define PLW_FCT_FCT_H

namespace plw {

struct Fct {
    double *y;     // ordinates; y[i] belongs to t[i]
    double *t;     // sample positions
    int n;         // samples in use
    int size;      // samples allocated; 0 in a linked record
    int lastIndex; // where the last search ended: the next one's hint
    char fixedLen; // 1: never grows or shrinks
    char linked;   // 1: shares another record's arrays
};

// Records and samples ---------------------------------------------------------------------------

// Empty function with room for `capacity` samples, at least 1.
Fct *newFct(int capacity);

// The same, of fixed length: incomplete until `capacity` samples have been appended.
Fct *newFctFixedLen(int capacity);

// Function of `count` ordinates (count >= 0), copied, at t0, t0 + dt, t0 + 2 dt, ..., each position
// rounded once.
//   count 3, t0 = 1, dt = 0.5 -> t = 1, 1.5, 2
Fct *newFctWith(const double *ordinates, int count, double t0, double dt);

// Copy with arrays of its own, just large enough. The copy of a fixed-length record can grow.
Fct *copyFct(const Fct *f);

// Second record on the arrays of f, with its own lastIndex. It is as long as f is now, fixed if f
// is (and then incomplete, its size being 0). Valid until f grows or is freed; only f may be
// appended to. Removing at the beginning through it moves the samples of f. freeFct on it leaves
// the arrays alone.
Fct *linkFct(const Fct *f);

// Adds a sample at the end. A full record grows to (size + 16) * 1.5 samples: 1, 25, 61, 115, ...
// Ends the process: "ERROR in appendFct: function with fixed length full".
void appendFct(Fct *f, double t, double y);

// Drops the last k samples, all of them for k >= n. A negative k takes back what was dropped, as
// far as the arrays reach. lastIndex becomes 0. A fixed-length record, full or not, ends the
// process with the message of appendFct: "ERROR in appendFct: function with fixed length full".
void removeAtEndFct(Fct *f, int k);

// Drops the first k samples, all of them for k >= n and none for k < 0, and moves the rest down.
// lastIndex becomes 0. Ends the process for a fixed-length record:
// "ERROR in removeAtBeginFct: function with fixed length full".
//   t = 1, 2, 3, 4:   k = 2 -> 3, 4   k = 10 -> empty   k = -1 -> 1, 2, 3, 4
void removeAtBeginFct(Fct *f, int k);

// Drops all samples, also of a fixed-length record. Capacity and lastIndex stay.
void clearFct(Fct *f);

// Releases the record, and its arrays unless it is linked.
void freeFct(Fct *f);

// y -> -y.
void negFct(Fct *f);

// Sorts the samples by t or by y, with quicksort: samples with equal keys may change places, and
// NaN keys end up anywhere. For the time, see there.
void sortByTFct(Fct *f);
void sortByYFct(Fct *f);

// Removes the 2 pi jumps of a phase in radians, in place: a sample more than pi away from the mean
// of the m unwrapped samples before it (m >= 1) is moved by 2 pi towards it, and with it all that
// follow. A jump of more than 3 pi stays in part. Missing samples before the first count as y[0],
// which never changes. From a NaN onwards no further jump is seen.
//   y = 0, 3, 6.2, 0.1 and m = 1 -> 0, 3, 6.2 - 2 pi, 0.1
void unwrapPhaseFct(Fct *f, int m);

// Writes a line "T  Y" for each sample to the file at `path`, as "%g  %g\n" does with a decimal
// point; a NULL or empty path means standard output. A missing directory is made, but not its
// parents. Ends the process: "ERROR: can't create directory: DIRECTORY", "ERROR: can't open file:
// PATH", "ERROR: can't write file: PATH".
void printFct(const Fct *f, const char *path);

// printFct to standard output, for use in a debugger.
void pp(const Fct *f);

// Searches --------------------------------------------------------------------------------------

// Index of the last sample at or below x; 0 when x lies below the first, is NaN, or f is empty, and
// when no position but the last is valid. Among samples at the same position any one may come,
// depending on lastIndex, which is set to it.
// Ends the process: "ERROR in indexFct: function incomplete".
int indexFct(Fct *f, double x);

// The sample position nearest to x; lastIndex becomes indexFct's result. Of two equally near ones
// the larger; for x NaN or -infinity the second, if there is one; NaN where a gap follows and for
// an empty function.
//   t = 0, 1, 3:   -7 -> 0   0.25 -> 0   0.5 -> 1   2 -> 3   9 -> 3   NaN -> 1
//   t = 0, NaN, 3:   1 -> NaN   3 -> 3
// Ends the process: "ERROR in closestTFct: function incomplete".
double closestTFct(Fct *f, double x);

// The largest ordinate, and position and index of the first sample that has it. NaN and ordinates
// not above -1e300 are passed over; if nothing else is there, *y is -1e300 and *t and *index are
// left as they are.
//   y = 1, 5, 5 -> 5 at index 1
// Ends the process: "ERROR in maximumFct: function incomplete".
void maximumFct(const Fct *f, double *t, double *y, int *index);

// Evaluation and integrals ----------------------------------------------------------------------

// Value at x, linear between samples. 0.0 outside the samples: no extrapolation. One NaN neighbour
// is replaced by the other; two samples at the same position give their mean, but where more
// samples follow, lastIndex may lead to the second alone. A single sample gives its y. Otherwise
// NaN for x NaN and next to a gap in t. Moves f->lastIndex.
//   (0, 1), (2, 5):   -1 -> 0   0 -> 1   1 -> 3   2 -> 5   3 -> 0
//   (0, 1), (1, NaN):   0.5 -> 1        (2, 1), (2, 3):   2 -> 2
// Ends the process: "ERROR in evalFct: function incomplete" (also for an empty function).
double evalFct(Fct *f, double x);

// Integral of the polygon from a to b. What lies outside the samples adds nothing, even to
// infinities; b <= a, and fewer than two samples, give 0.0. A NaN ordinate or position within makes
// it NaN; at the two ends NaN neighbours are replaced as by evalFct. A NaN in a gives 0.0, one in b
// the integral up to the last sample. Moves f->lastIndex.
//   (0, 1), (1, 1):   0.25..0.75 -> 0.5   -5..5 -> 1   3..1 -> 0
// Ends the process: "ERROR in integral: function incomplete".
double integralFct(double a, double b, Fct *f);

// The same for `count` pairs x0, y0, x1, y1, ..., which are always complete. With b < a it is 0.0,
// unless both lie between the same two samples, a at the upper one or b not at the lower one
// included: then it is the negative of the integral from b to a. Remembers its start index over
// calls, for all arrays together.
//   0, 1, 1, 1, 4, 1:   0..4 -> 4   3..2 -> -1   3..0.5 -> 0
double integralXY(double a, double b, const double *pairs, int count);

// Integral of x^p y^q, with x^p y^q taken as linear between the `count` samples: p = 0, q = 1 is
// the plain integral, p = 1, q = 1 the first moment, p = 0, q = 2 the integral of the square. For
// the rest as integralXY, with a start index of its own.
//   x = 0, 1, 2 and y = 1, 2, 3, from 0 to 2:   p = 0, q = 0 -> 2   p = 0, q = 1 -> 4
//   p = 1, q = 1 -> 5   p = 0, q = 2 -> 9
double integralYarr(double a, double b, const double *x, const double *y, int count, double p,
                    double q);

// Crossings and extremes ------------------------------------------------------------------------

// Finds the first position after x where f has the given value: 1 and the position in *t, or 0 and
// *t left alone. The search begins at the sample after the last one at or below x: a crossing in
// the segment that holds x is passed over. NaN ordinates are passed over. Two neighbours are taken
// to enclose the value when the product of their distances from it is not positive: of distances
// below 1e-162 it may underflow to 0, and then *t, on the line through both, may lie outside them.
// Moves f->lastIndex.
//   t = 0, 1, 2, 3 and y = 0, 2, 0, 2, value 1:   x = -1 -> 0.5   x = 0 -> 1.5   x = 1.2 -> 2.5
// Ends the process: "ERROR in findRootBeyondFct: function incomplete", the name it once had.
int findValueBeyondFct(double x, Fct *f, double value, double *t);

// The ordinate of the next local extreme after x, or of the last one before it, and its position in
// *t; NaN and *t left alone if there is none. Extremes are those of nextExtreme and prevExtreme.
// The search goes forward from the sample after the last one at or below x, but backward from that
// one.
//   t = 0, 1, 2, 3, 4 and y = 0, 2, 0, 2, 0:   beyond 0 -> 2 at 1   beyond 1 -> 0 at 2
//   before 1.5 -> 2 at 1   before 0.5 -> NaN
// Ends the process: "ERROR in extremeBeyondFct: function incomplete",
// "ERROR in extremeBeforeFct: function incomplete".
double extremeBeyondFct(double x, Fct *f, double *t);
double extremeBeforeFct(double x, Fct *f, double *t);

// Index of the first local extreme from `start` upward or downward, `start` included; -1 if there
// is none or `start` has no neighbour on one side. An extreme is where y changes towards the next
// sample and did not change in that direction before: a flat top counts at its last sample, and so
// does the last sample of any flat stretch. A NaN neighbour makes no extreme.
//   y = 1, 3, 3, 1:   next from 1 -> 2        y = 1, 1, 2:   next from 1 -> 1
//   y = 0, 2, 0, 2, 0:   prev from 3 -> 3   next from 0 -> -1
int nextExtreme(const double *y, int count, int start);
int prevExtreme(const double *y, int count, int start);

// Fractional index of the first sign change from `start` on, linear between samples; a negative
// start counts as 0. Two zeros in a row are no sign change. -1.0 if there is none, NaN if
// it leads away from an infinite ordinate.
//   y = 1, -1 -> 0.5        y = 0, 0, 1 -> 1        y = 2, 0 -> 1
double nextZero(const double *y, int count, int start);

// Arithmetic ------------------------------------------------------------------------------------

// f + g, f - g and f * g as a new function. Its samples lie where either has one, equal positions
// once, from the later start of the two to the earlier end; the function that starts first also
// gives its last sample at or below the other's start, where the other is 0.0. Values are those of
// evalFct. Two empty functions, or one, give an empty one.
//   f at 0, 1, 2 and g at 0.5, 1.5, 2.5 -> samples at 0, 0.5, 1, 1.5, 2
// Ends the process: "ERROR in evalFct: function incomplete".
Fct *addFct(Fct *f, Fct *g);
Fct *subFct(Fct *f, Fct *g);
Fct *mulFct(Fct *f, Fct *g);

// (f * k)(x), the integral of f(s) k(x - s) over s, by trapezoids on the merged samples of f and of
// the mirrored kernel. The kernel is not normalised. 0.0 where the two do not meet. Where one of
// the two starts between two samples of the other, a triangle that rises from 0 at the first of
// them counts too.
//   f = 1 on 0, 1, ... 10, kernel (-4, 0.125), (4, 0.125):   x = 5 -> 1   0 -> 0.75   10 -> 0.5
// Ends the process: "ERROR in evalFct: function incomplete".
double convoluteFct(Fct *f, const Fct *kernel, double x);

// Replaces every ordinate of f by (f * kernel) at its position. A kernel whose integral is 1 keeps
// the level, except near the ends, where it falls: f is 0 outside. Time goes with the samples under
// the kernel, not with the square of f's.
// Ends the process: "ERROR in evalFct: function incomplete".
void smoothFct(Fct *f, const Fct *kernel);

// Peaks -----------------------------------------------------------------------------------------

// Peaks of a width of about `width` (> 0, in units of t), as a new function of positions and
// strengths, in the order in which they are found. At every position the integral over half a width
// to the right less that to the left is taken; a peak is where this difference crosses zero, and
// its strength is the difference's extreme before the crossing less the one after it, divided by
// width / 2. If there is only one of them, it counts twice. Strengths below the threshold are left
// out, and so valleys by any positive threshold. A NaN hides the peaks within nearly a whole width
// of it. A function that is empty or shorter than `width` has no peaks.
//
// Positions ascend, except where the differences are so small that findValueBeyondFct takes what is
// no crossing: the search goes on from the position that it gave. Where it would go round for ever,
// it only goes forward. Time: the number of samples times those within a width. Moves f->lastIndex.
// Ends the process: "ERROR in peaksFct: function incomplete".
Fct *peaksFct(Fct *f, double threshold, double width);

// The parabola through three points: curvature (the factor of x^2) and vertex; 1 if it has one. 0
// with nothing written if x[1] equals x[0] or x[2]; 0 with only *curvature = 0 written if the
// points lie on a line. x[2] must not equal x[0], which is not looked at: it gives 1, infinities
// and NaN.
//   (0, 0), (1, 1), (2, 0) -> curvature -1, vertex (1, 1)
int parabola(const double *x, const double *y, double *curvature, double *xVertex, double *yVertex);

} // namespace plw

#endif
