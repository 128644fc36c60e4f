#include "util/time/timer.h"

#include <sys/time.h>

namespace plw {

double startTimer() {
    timeval now;
    gettimeofday(&now, nullptr);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_usec) * 1e-6;
}

double stopTimer(double start) {
    return startTimer() - start;
}

} // namespace plw
