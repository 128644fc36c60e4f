// refusal.h - a message that can't be done, with the reason.
#ifndef PLOTWERK_BASE_REFUSAL_H
#define PLOTWERK_BASE_REFUSAL_H

#include <stdexcept>

namespace plotwerk {

// Thrown before anything has been changed: a refused message leaves every document as it was. The
// text is one English line without a full stop, for the log and for whoever asks for the last
// error.
struct Refusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace plotwerk

#endif
