#include "tests/support/failingMemory.h"

#include <cstdlib>
#include <limits>
#include <malloc.h>
#include <new>

static constexpr long unlimited = std::numeric_limits<long>::max();
static long allocationsLeft = unlimited;
static bool reusesFreed = false;
static std::size_t freed = 0; // bytes, since it is full
static bool failed = false;

FailingMemory::FailingMemory(long allocations, bool reuses) {
    allocationsLeft = allocations;
    reusesFreed = reuses;
    freed = 0;
    failed = false;
}

FailingMemory::~FailingMemory() {
    allocationsLeft = unlimited;
}

bool FailingMemory::hasFailed() {
    return failed;
}

void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
    if (allocationsLeft > 0) {
        if (allocationsLeft != unlimited) --allocationsLeft;
    } else if (size <= freed) {
        freed -= size;
    } else {
        failed = true;
        return nullptr;
    }
    return std::malloc(size > 0 ? size : 1);
}
void *operator new(std::size_t size) {
    if (void *memory = operator new(size, std::nothrow)) return memory;
    throw std::bad_alloc();
}
void operator delete(void *memory) noexcept {
    if (allocationsLeft == 0 && reusesFreed) freed += malloc_usable_size(memory);
    std::free(memory);
}
void operator delete(void *memory, std::size_t) noexcept {
    operator delete(memory);
}

// By themselves those of arrays call the others, but not those of a sanitizer.
void *operator new[](std::size_t size) {
    return operator new(size);
}
void operator delete[](void *memory) noexcept {
    operator delete(memory);
}
void operator delete[](void *memory, std::size_t) noexcept {
    operator delete(memory);
}
