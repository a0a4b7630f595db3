// The directory of a pack as its file has it, faults and all.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct PackRecord
{
    uint32_t start = 0, end = 0;
    std::string name; ///< up to its terminator, in the file's own case
    bool terminated = true;

    /// Bytes of the member; what ends before it starts wraps around.
    uint32_t size() const { return end - start + 1; }
    bool endsBeforeStart() const { return static_cast<uint32_t>(end + 1) < start; }
};

struct PackFile
{
    std::string path;
    uint64_t fileSize = 0;
    uint64_t directorySize = 0;      ///< with the end mark, or what the file has instead
    std::vector<PackRecord> records; ///< without the end mark
    bool hasEndMark = false;

    uint64_t dataSize() const { return fileSize > directorySize ? fileSize - directorySize : 0; }
    /// Is all of a member in the file?
    bool isWhole(const PackRecord& record) const
    {
        return !record.endsBeforeStart() && (record.size() == 0 || record.end < dataSize());
    }
};

/// Reads the directory. @return what speaks against the file being a pack, for people; empty if nothing does
std::string readPackFile(const std::string& path, PackFile* pack);

/// All that is wrong with a pack, a line each.
std::vector<std::string> faultsOf(const PackFile& pack);
