#include "apps/vornik/packcopy.h"

#include <algorithm>
#include <istream>
#include <ostream>
#include <vector>

#include "apps/vornik/progressbar.h"

static const uint64_t longCopy = 16 << 20;

CopyProgress::~CopyProgress()
{
    clearProgress();
}

void CopyProgress::add(uint64_t bytes)
{
    done += bytes;
    if (total >= longCopy)
        showProgress(static_cast<float>(done) / static_cast<float>(total));
}

bool copyBytes(std::istream& in, std::ostream& out, uint64_t bytes, CopyProgress* progress)
{
    std::vector<char> buffer(1 << 20);
    while (bytes > 0)
    {
        const uint64_t part = std::min<uint64_t>(bytes, buffer.size());
        if (!in.read(buffer.data(), static_cast<std::streamsize>(part)) ||
            !out.write(buffer.data(), static_cast<std::streamsize>(part)))
            return false;
        bytes -= part;
        progress->add(part);
    }
    return true;
}
