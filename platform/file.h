// Opening files whose names were written for another system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

/// Opens a file. Where the name as given finds nothing, backslashes count as separators and each component is
/// looked up without regard to case among the entries of its folder: an exact match wins, among several
/// others the first in byte order. `.` and `..` work. A mode that creates finds the folders in the same way
/// and keeps the file's own name unless a file of that name in other case exists.
/// @return null on failure and for a folder; a mode that reads takes plain files only
FILE* vrkOpenFile(const char* name, const char* mode);

/// The name under which vrkOpenFile would open an existing file or folder; empty if there is none.
std::string vrkResolveName(const char* name);

/// fseek from the start and ftell, in packs of any size; a long need not hold their places.
bool vrkSeek(FILE* file, uint64_t place);
uint64_t vrkTell(FILE* file);

/// Length of an open file, whose place stays. 0 if it can't be told.
uint64_t vrkLength(FILE* file);

/// Reads a whole file. @param padding  zero bytes to add behind the content
/// @param size  [out] bytes of the file, without the padding
/// @return a malloc block that the caller owns; null if it can't be opened or is larger than 2 GiB
char* vrkReadFile(const char* name, size_t padding, size_t* size);
