// child.h - work in a child process, so that neither its time nor its memory can harm this one.
#ifndef PLOTWERK_BASE_CHILD_H
#define PLOTWERK_BASE_CHILD_H

#include <functional>

namespace plotwerk {

// Does the work in a forked child within the bounds of one message (bounds.h) and waits for it. The
// child sees everything as it is now; what it changes in memory is lost, what it writes to open
// files stays. It dies with this process. Other threads must not hold anything that the work
// needs.
//
// Throws Refusal: with the reason that the work gave by an exception; when it took too much time or
// memory, or crashed; when no child can be started; and when SIGTERM or SIGINT, which the caller
// has blocked, asks this process to end.
void inChild(const std::function<void()> &work);

// From now on inChild does the work in this process, without bounds: one of several threads can't
// be forked safely.
void forkNoChildren();

} // namespace plotwerk

#endif
