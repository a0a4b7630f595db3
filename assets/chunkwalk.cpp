#include "assets/chunkwalk.h"

#include <algorithm>

bool loaderTolerant = false;

// A header can't be shorter than this, so a tolerant walk ends where a shorter chunk is claimed.
static const int headerSize = 6;

// Makes the block end elsewhere, and tells atEnd anew.
static void resize(int32_t size)
{
    vrkLoader.size = size;
    vrkLoader.atEnd = vrkLoader.current >= vrkLoader.data + size;
}

static int64_t position(const uint8_t* at)
{
    return at - vrkLoader.data;
}

// Size of the block if it ended a number of bytes behind the most recent header; never larger than it is, and
// never in front of the cursor.
static int32_t sizeUpTo(int64_t chunkLength)
{
    const int64_t start = position(vrkLoader.chunkStart);
    const int64_t end = chunkLength < vrkLoader.size - start ? start + chunkLength : vrkLoader.size;
    return static_cast<int32_t>(
        std::max(end, std::min<int64_t>(position(vrkLoader.current), vrkLoader.size)));
}

ChunkWalk::ChunkWalk(int64_t chunkLength, int64_t counted)
    : strictLength(chunkLength), total(counted), outerSize(vrkLoader.size), ownSize(vrkLoader.size)
{
    if (!loaderTolerant)
        return;
    ownSize = sizeUpTo(chunkLength);
    resize(ownSize);
}

ChunkWalk::~ChunkWalk()
{
    if (!loaderTolerant)
        return;
    vrkLoader.current = vrkLoader.data + ownSize;
    resize(outerSize);
}

bool ChunkWalk::next()
{
    leave();
    if (vrkLoader.atEnd)
        return false;
    if (!loaderTolerant)
    {
        if (total >= strictLength)
            return false;
    }
    else if (vrkLoader.data + ownSize - vrkLoader.current < headerSize)
        return false;

    vrkLoader.getChunkID();
    length = vrkLoader.chunkLength;
    total += length;
    if (!loaderTolerant)
        return true;
    if (length < headerSize)
        return false;
    insideChild = true;
    resize(sizeUpTo(length));
    return true;
}

void ChunkWalk::leave()
{
    if (!insideChild)
        return;
    insideChild = false;
    vrkLoader.current = vrkLoader.data + vrkLoader.size;
    resize(ownSize);
}

void ChunkWalk::enter(int64_t counted)
{
    total += counted - length;
    if (!insideChild)
        return;
    insideChild = false;
    resize(ownSize);
}

void ChunkWalk::skip()
{
    if (!loaderTolerant)
        skipForward();
}

int ChunkWalk::clip(int count, int recordSize)
{
    if (!loaderTolerant)
        return count;
    const int64_t rest = std::max<int64_t>(vrkLoader.size - position(vrkLoader.current), 0);
    return static_cast<int>(std::min<int64_t>(count, rest / recordSize));
}

void skipForward()
{
    if (vrkLoader.chunkLength == 0 && !vrkLoader.atEnd)
    {
        vrkLoader.current = vrkLoader.data + vrkLoader.size;
        vrkLoader.atEnd = true;
    }
    vrkLoader.skipChunk();
}
