// fitProgress.h - how far a fit has come, and how it is cancelled, for a thread beside it.
#ifndef PLOTWERK_FIT_FITPROGRESS_H
#define PLOTWERK_FIT_FITPROGRESS_H

#include "plotwerk/model/document.h"

#include <atomic>
#include <functional>

namespace plotwerk {

// Thrown in a fit that was cancelled.
struct FitCancelled {};

class FitProgress {
  public:
    // By the fit: after each step, with the sum of squares that it has reached.
    void countStep(double reached) {
        chiSquareReached.store(reached, std::memory_order_relaxed);
        steps.fetch_add(1, std::memory_order_relaxed);
    }

    // By the fit, after every few microseconds of work. Throws FitCancelled.
    void requireWanted() const {
        if (cancelled.load(std::memory_order_relaxed)) throw FitCancelled{};
    }

    void cancel() { cancelled.store(true, std::memory_order_relaxed); }
    int iterations() const { return steps.load(std::memory_order_relaxed); }

    // Unset before the first step.
    double chiSquare() const { return chiSquareReached.load(std::memory_order_relaxed); }

  private:
    std::atomic<int> steps = 0;
    std::atomic<double> chiSquareReached = unset;
    std::atomic<bool> cancelled = false;
};

// Has solve done, in another thread perhaps, and returns when it is over; throws what it throws.
// solve reads nothing of a document.
using FitRunner = std::function<void(FitProgress &progress, const std::function<void()> &solve)>;

} // namespace plotwerk

#endif
