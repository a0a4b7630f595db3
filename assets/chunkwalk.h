// The children of a .3DS chunk, one after the other, at the cursor of vrkLoader.
//
// In the strict reading a walk ends when the lengths that it counted reach the chunk's own length, and the
// cursor stays wherever the reading of a child left it: what exporters wrote by other rules is then taken for
// more chunks. In the tolerant reading each child is a block of its own: reads stop at its end, and the next
// child begins there.
#pragma once

#include <cstdint>

#include "core/memorylasts.h"
#include "vornik/assets/loader.h"

/// The reading of the running load, false outside one. Set also by the readers that get flags.
extern bool loaderTolerant;

class ChunkWalk
{
public:
    /// @param length   of the chunk whose header was read last, header included; more than the block for all
    /// of it
    /// @param counted  bytes of it that the strict reading counts as done
    ChunkWalk(int64_t length, int64_t counted);
    ChunkWalk(const ChunkWalk&) = delete;
    ChunkWalk& operator=(const ChunkWalk&) = delete;
    /// A tolerant walk leaves the cursor at the end of the chunk.
    ~ChunkWalk();

    /// Reads the header of the next child into vrkLoader. @return false when the chunk is over
    bool next();
    /// The child's own children come up in this walk from the cursor on. @param counted  bytes of it that the
    /// strict reading counts; the rest counts with the children
    void enter(int64_t counted);
    /// More bytes that the strict reading counts.
    void count(int64_t bytes) { total += bytes; }
    /// Passes over the rest of the child.
    void skip();
    /// Ends the child in the tolerant reading; next() does so, too.
    void leave();

    /// Length of the child as stored, its header included.
    uint32_t childLength() const { return length; }
    /// The number of records of a size that a list of count holds: in the tolerant reading no more than fit.
    static int clip(int count, int recordSize);

private:
    int64_t strictLength, total;
    uint32_t length = 0;
    int32_t outerSize; // of the block around the chunk
    int32_t ownSize;   // of the block that ends with the chunk
    bool insideChild = false;
};

/// Runs a reader. Where memory ends the block does: what is read by then stays.
template <class Read>
void readWhileMemoryLasts(Read read)
{
    if (!whileMemoryLasts(read))
        vrkLoader.atEnd = true;
}

/// Passes over the most recent chunk. One that claims no length at all would be read again and again: it ends
/// the block.
void skipForward();
