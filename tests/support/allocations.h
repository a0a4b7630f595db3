// Counts what the engine's own code takes from the heap. Libraries below it, OpenGL's driver too, go
// uncounted.
#pragma once

/// Calls of malloc, calloc, realloc and new since the program began.
long allocationCount();

/// While it lives, calloc finds no memory.
class NoMemory
{
public:
    NoMemory();
    NoMemory(const NoMemory&) = delete;
    NoMemory& operator=(const NoMemory&) = delete;
    ~NoMemory();
};
