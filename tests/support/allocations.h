// Counts what the engine's own code takes from the heap. Libraries below it, OpenGL's driver too, go
// uncounted.
#pragma once

/// Calls of malloc, calloc, realloc and new since the program began.
long allocationCount();

/// Bytes that the engine's own code holds at the moment, and the most it held since resetPeak.
long long heldBytes();
long long peakBytes();
void resetPeak();

/// Lets the n-th call from now on, counted from 1, find no memory: malloc, calloc and realloc give null, new
/// throws. 0 lets all succeed again. @return were there that many calls since the last time?
bool failAllocation(long n);

/// While it lives, calloc finds no memory.
class NoMemory
{
public:
    NoMemory();
    NoMemory(const NoMemory&) = delete;
    NoMemory& operator=(const NoMemory&) = delete;
    ~NoMemory();
};
