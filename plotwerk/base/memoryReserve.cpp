#include "plotwerk/base/memoryReserve.h"

#include <cstdlib>
#include <new>
#include <sys/mman.h>

namespace plotwerk {

// Of the longest message that the bus takes, 128 MiB, there are two copies.
static constexpr std::size_t reserveSize = std::size_t{320} << 20;

static void *reserve = nullptr;
static bool keptBack = false;

static void giveUpOrFail() {
    if (keptBack || !giveReserveUp()) throw std::bad_alloc();
}

void setReserveAside() {
    if (reserve) return;
    std::set_new_handler(giveUpOrFail);
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

void makeRoomFor(std::size_t bytes) noexcept {
    void *volatile probe = std::malloc(bytes); // volatile: not optimised away
    if (!probe) giveReserveUp();
    std::free(probe);
}

WithoutReserve::WithoutReserve() : before(keptBack) {
    keptBack = true;
}

WithoutReserve::~WithoutReserve() {
    keptBack = before;
}

} // namespace plotwerk
