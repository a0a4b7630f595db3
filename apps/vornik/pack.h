// vornik pack: makes, lists, unpacks and checks pack files.
#pragma once

#include <string>
#include <vector>

struct PackOptions
{
    std::string pack;
    std::vector<std::string> files; ///< to pack: files, and folders with all in them
    std::string root;               ///< folder that names count from; empty for the one that holds all files
    std::string prefix = ".";       ///< folder in front of all names
    std::vector<std::string> names; ///< to extract; all if there are none
    std::string into = ".";
    bool force = false;
};

// Each returns the exit status.
int packCreate(const PackOptions& options);
int packList(const PackOptions& options);
int packExtract(const PackOptions& options);
int packVerify(const PackOptions& options);
