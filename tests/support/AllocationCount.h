#pragma once

#include <cstddef>

/// Counts what is allocated with malloc() and operator new, by any library, while it exists. One at
/// a time, and in a program of one thread.
class AllocationCount
{
public:
    AllocationCount();
    ~AllocationCount();
    AllocationCount(const AllocationCount&) = delete;
    AllocationCount& operator=(const AllocationCount&) = delete;

    /// False where a sanitizer or valgrind has taken malloc(): then nothing is counted. Not to be
    /// called while one exists.
    static bool isPossible();

    std::size_t blocks() const; ///< allocated since, and not freed
    std::size_t bytes() const;  ///< that those blocks were asked for, without the heap's own
    /// Since then, whether freed or not; a block that is made larger or smaller counts again.
    std::size_t allocations() const;
};
