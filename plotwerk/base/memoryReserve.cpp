#include "plotwerk/base/memoryReserve.h"

#include <algorithm>
#include <alloca.h>
#include <cstdlib>
#include <new>
#include <sys/mman.h>
#include <sys/resource.h>
#include <utility>

namespace plotwerk {

// What waits to be answered takes 50 MB (server.cpp) and one message more, with 128 MiB as long as
// the bus takes them, of which there are two copies: 318 MB. An answer of 120 MB takes twice that.
static constexpr std::size_t reserveSize = std::size_t{320} << 20;

static void *reserve = nullptr;
static bool keptBack = false;

static void (*fail)() = [] { throw std::bad_alloc(); };

static void giveUpOrFail() {
    if (keptBack || !giveReserveUp()) fail();
}

// A stack that can't grow ends the process. Once it has grown it stays so.
static void growStack() {
    constexpr rlim_t most = 1 << 20; // that work takes
    constexpr std::size_t page = 4096;
    rlimit limit{};
    if (getrlimit(RLIMIT_STACK, &limit) != 0) return;
    const std::size_t size = std::min(most, limit.rlim_cur / 2);
    volatile char *const grown = static_cast<char *>(alloca(size));
    for (std::size_t i = page; i < size; i += page) grown[size - i] = 0; // downwards, as it grows
}

void setReserveAside() {
    if (reserve) return;
    if (std::set_new_handler(giveUpOrFail) != giveUpOrFail) growStack();
    void *mapped =
        mmap(nullptr, reserveSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (mapped != MAP_FAILED) reserve = mapped;
}

bool giveReserveUp() noexcept {
    if (!reserve) return false;
    munmap(reserve, reserveSize);
    reserve = nullptr;
    return true;
}

static bool isFree(std::size_t bytes) noexcept {
    void *volatile probe = std::malloc(bytes); // volatile: not optimised away
    std::free(probe);
    return probe != nullptr;
}

void makeRoomFor(std::size_t bytes) noexcept {
    if (!isFree(bytes)) giveReserveUp();
}

void requireFree(std::size_t bytes) {
    if (!isFree(bytes)) throw std::bad_alloc();
}

FailingBy::FailingBy(void (*failing)()) : before(std::exchange(fail, failing)) {
}

FailingBy::~FailingBy() {
    fail = before;
}

WithoutReserve::WithoutReserve() : before(keptBack) {
    keptBack = true;
}

WithoutReserve::~WithoutReserve() {
    keptBack = before;
}

} // namespace plotwerk
