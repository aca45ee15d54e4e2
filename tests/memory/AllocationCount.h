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

    /// False where a sanitizer has taken malloc(): then nothing is counted.
    static bool isPossible();

    std::size_t blocks() const; ///< allocated since, and not freed
    std::size_t bytes() const;  ///< that those blocks were asked for, without the heap's own
};
