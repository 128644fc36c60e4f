// guarded.h - C++ that a C library calls: an exception must not pass through the library.
#ifndef PLOTWERK_WINDOW_GUARDED_H
#define PLOTWERK_WINDOW_GUARDED_H

#include <glibmm.h>

namespace plotwerk {

// Does the work. What it throws goes where the exceptions of gtkmm's own handlers go, to the
// application's handler of exceptions, and ends only this work.
template<class Work> void guarded(const Work &work) noexcept {
    try {
        work();
    } catch (...) {
        Glib::exception_handlers_invoke();
    }
}

} // namespace plotwerk

#endif
