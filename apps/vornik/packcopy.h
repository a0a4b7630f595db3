// Copying bytes into and out of packs.
#pragma once

#include <cstdint>
#include <iosfwd>

/// The progress bar of a long copy. Small ones have none.
class CopyProgress
{
public:
    explicit CopyProgress(uint64_t totalBytes) : total(totalBytes) {}
    CopyProgress(const CopyProgress&) = delete;
    CopyProgress& operator=(const CopyProgress&) = delete;
    ~CopyProgress();
    void add(uint64_t bytes);

private:
    uint64_t total, done = 0;
};

/// @return false if there are fewer bytes to read or they can't be written
bool copyBytes(std::istream& in, std::ostream& out, uint64_t bytes, CopyProgress* progress);
