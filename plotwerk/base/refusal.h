// refusal.h - a message that can't be done, with the reason.
#ifndef PLOTWERK_BASE_REFUSAL_H
#define PLOTWERK_BASE_REFUSAL_H

#include <exception>
#include <new>
#include <stdexcept>

namespace plotwerk {

// Thrown before anything has been changed: a refused message leaves every document as it was. The
// text is one English line without a full stop, for the log and for whoever asks for the last
// error.
struct Refusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// What the exception says, and of one that found no memory, which says nothing, that.
inline const char *reasonOf(const std::exception &exception) noexcept {
    const bool noMemory = dynamic_cast<const std::bad_alloc *>(&exception) != nullptr;
    return noMemory ? "not enough memory" : exception.what();
}

} // namespace plotwerk

#endif
