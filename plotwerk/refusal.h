// refusal.h - why a message can't be done.
#ifndef PLOTWERK_REFUSAL_H
#define PLOTWERK_REFUSAL_H

#include <stdexcept>

namespace plotwerk {

// The reason as one clear line. Whoever throws it has changed nothing.
struct Refusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace plotwerk

#endif
