// bounds.h - how much time and memory one message may take.
//
// Work inside the process is estimated before it begins and refused if it would go beyond: an
// estimate is counted in steps, never measured by a clock, so that what is refused doesn't depend
// on the load of the machine. Work whose cost can't be told beforehand is done in a child process
// (child.h).
#ifndef PLOTWERK_BASE_BOUNDS_H
#define PLOTWERK_BASE_BOUNDS_H

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace plotwerk {

// One of the bounds; each has a name by which it can be raised when the program starts.
struct Bound {
    const char *name;
    const char *meaning; // with its unit
    double value;
    double least; // that it can be set to
    double most;
};

// All bounds, with the values in force.
std::span<const Bound> bounds();

// Sets a bound from "NAME=VALUE". Throws Refusal: no such name, or not a number it can have.
void setBound(std::string_view assignment);

// CPU time, in seconds.
double mostSeconds();

// Memory that is taken beyond what the process has already, in bytes.
double mostMemory();

// The bytes of one answer on the bus.
double longestAnswer();

// The bytes of answers that a client may leave unread before it gets no more.
double mostUnread();

// Refused "would take too long (limit seconds)" if these nanoseconds are more than one message
// may take.
void requireTime(double nanoseconds);

// Refused "would take too much memory (limit memory)" if these bytes are more than one message
// may take.
void requireMemory(double bytes);

// Refused "the answer would be too long (limit answer)" if the text is longer than one answer may
// be.
void requireAnswer(std::string_view text);

// As requireMemory, of what is to stay in a document. Refused also "the open documents would take
// too much memory (limit documents)".
void requireRoom(double bytes);

// Has the function tell, from here on, how many bytes the open documents hold; none: nothing.
void setBytesHeld(std::function<double()> count);

// While it lives requireMemory allows what all open documents may hold where that is more than one
// message may take: a document that is brought back had been made by many.
class WithMemoryOfDocuments {
  public:
    WithMemoryOfDocuments();
    ~WithMemoryOfDocuments();
    WithMemoryOfDocuments(const WithMemoryOfDocuments &) = delete;
    WithMemoryOfDocuments &operator=(const WithMemoryOfDocuments &) = delete;

  private:
    bool before;
};

} // namespace plotwerk

#endif
