#pragma once

#include <cstddef>

namespace zavex::test {

/**
 * Counts what this thread allocates with `new` from its construction on, and lets one of these fail
 * if told to. Of those that let one fail, only one may live at a time.
 *
 * A test that uses it links `allocation_counter`, which replaces the global operators `new` and
 * `delete` of the whole executable.
 */
class AllocationCounter {
public:
    AllocationCounter() : mStart(allocations()) {}

    /** @param failing  Which allocation fails, from 1. */
    explicit AllocationCounter(std::size_t failing);
    AllocationCounter(const AllocationCounter&) = delete;
    AllocationCounter(AllocationCounter&&) = delete;
    AllocationCounter& operator=(const AllocationCounter&) = delete;
    AllocationCounter& operator=(AllocationCounter&&) = delete;
    ~AllocationCounter();

    /** Allocations since construction, those given back and the failed one included. */
    std::size_t count() const { return allocations() - mStart; }

private:
    static std::size_t allocations();

    std::size_t mStart;
};

} // namespace zavex::test
