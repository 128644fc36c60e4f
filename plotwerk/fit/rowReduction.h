// rowReduction.h - a least-squares problem of any number of rows, reduced to a triangle as they
// come.
#ifndef PLOTWERK_FIT_ROWREDUCTION_H
#define PLOTWERK_FIT_ROWREDUCTION_H

#include <vector>

namespace plotwerk {

// The QR factorisation of J | r, a block of rows at a time (sequential Householder), so that J is
// never held: min |J d - r| has the solution of R d = q. As accurate as a factorisation at once.
// Real is double or long double.
template<class Real> class RowReduction {
  public:
    // For blocks of at most maxRows rows.
    RowReduction(int columns, int maxRows);

    // Forgets all rows.
    void clear();

    // Where the rows of the next block are to be written: element i of column j is that of row i.
    // Column number columns() is the right-hand side r.
    Real *column(int j) { return block.data() + static_cast<long>(j) * rowsPerBlock; }

    // Takes the first n rows of the block in. The block's contents are lost.
    void absorb(int n);

    int columns() const { return size; }
    Real R(int i, int j) const { return triangle[index(i, j)]; } // i <= j
    Real q(int i) const { return triangle[index(i, size)]; }

    // Euclidean length of column j of J, and of q, by which the solution shortens r.
    Real length(int j) const;
    Real lengthOfQ() const { return length(size); }

    // Derivative of the sum of squares along each parameter, halved and with the sign changed: J'
    // r.
    std::vector<Real> descent() const;

    // d of R d = q, and of R' R d = g. Division by zero where R is singular.
    std::vector<Real> solve() const;
    std::vector<Real> solveNormal(std::vector<Real> g) const;

  private:
    int index(int i, int j) const { return i * (size + 1) + j; }
    void substituteBack(std::vector<Real> &d) const;

    int size;
    int rowsPerBlock;
    std::vector<Real> triangle; // R | q by rows
    std::vector<Real> block;    // by columns
};

// Both add up in several parts, which round less than one long sum.
template<class Real> Real dot(const Real *a, const Real *b, int n);
template<class Real> Real sumOfSquares(const Real *a, int n) {
    return dot(a, a, n);
}

} // namespace plotwerk

#endif
