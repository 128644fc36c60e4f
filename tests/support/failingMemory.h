// failingMemory.h - an operator new that finds no memory from one of its calls on. Whatever links
// failingMemory.cpp has it.
#ifndef TESTS_SUPPORT_FAILINGMEMORY_H
#define TESTS_SUPPORT_FAILINGMEMORY_H

// While it lives memory is full after that number of allocations: for all of the process, one at a
// time. What is freed from then on can be taken again where `reuses`.
class FailingMemory {
  public:
    explicit FailingMemory(long allocations, bool reuses = true);
    ~FailingMemory();
    FailingMemory(const FailingMemory &) = delete;
    FailingMemory &operator=(const FailingMemory &) = delete;

    // Whether an allocation has failed.
    static bool hasFailed();
};

#endif
