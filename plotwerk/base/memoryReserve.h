// memoryReserve.h - address space that is set aside for taking a message in and sending its answer.
//
// Where a process may have no more memory (RLIMIT_AS), work that asks for it fails and is refused.
// The libraries that talk to the bus couldn't go on then: for them the reserve is given up, and set
// aside again when memory has become free. It is never touched, so that it takes none. For one
// thread at a time: others may call operator new only while that one is within WithoutReserve.
#ifndef PLOTWERK_BASE_MEMORYRESERVE_H
#define PLOTWERK_BASE_MEMORYRESERVE_H

#include <cstddef>

namespace plotwerk {

// Sets the reserve aside, if it isn't and if that can be done. From the first time on an operator
// new that finds no memory gives it up, but not within WithoutReserve; and the calling thread's
// stack has its memory already.
void setReserveAside();

// False when there is none.
bool giveReserveUp() noexcept;

// Gives the reserve up when `bytes` could not be allocated without it.
void makeRoomFor(std::size_t bytes) noexcept;

// For libraries that end the process where they find no memory: throws std::bad_alloc when `bytes`
// can't be allocated without the reserve.
void requireFree(std::size_t bytes);

// While it lives, an operator new that finds no memory, and no reserve, fails by calling this,
// which throws std::bad_alloc or what is derived from it.
class FailingBy {
  public:
    explicit FailingBy(void (*fail)());
    ~FailingBy();
    FailingBy(const FailingBy &) = delete;
    FailingBy &operator=(const FailingBy &) = delete;

  private:
    void (*const before)();
};

// While it lives, operator new leaves the reserve alone.
class WithoutReserve {
  public:
    WithoutReserve();
    ~WithoutReserve();
    WithoutReserve(const WithoutReserve &) = delete;
    WithoutReserve &operator=(const WithoutReserve &) = delete;

  private:
    const bool before;
};

} // namespace plotwerk

#endif
