// Files by pattern, for names that were written for another system.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct ListedFile
{
    std::string name; ///< without its folder
    uint64_t size;    ///< bytes; 0 for a folder
};

/// The files and folders of one folder whose names match, in byte order, "." and ".." among them. Case is no
/// matter, and the folder in front of the pattern is found as vrkOpenFile finds it.
/// @param pattern  its last component may have * for any characters, none too, and ? for one; one that
///                 ends in ".*" also takes names without an extension. Null and empty ones match nothing
std::vector<ListedFile> vrkListFiles(const char* pattern);
