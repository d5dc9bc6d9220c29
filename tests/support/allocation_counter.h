#pragma once

#include <cstddef>

namespace zavex::test {

/**
 * Counts what this thread allocates with `new` from its construction on.
 *
 * A test that uses it links `allocation_counter`, which replaces the global operators `new` and
 * `delete` of the whole executable.
 */
class AllocationCounter {
public:
    AllocationCounter() : mStart(allocations()) {}

    /** Allocations since construction, those given back included. */
    std::size_t count() const { return allocations() - mStart; }

private:
    static std::size_t allocations();

    std::size_t mStart;
};

} // namespace zavex::test
