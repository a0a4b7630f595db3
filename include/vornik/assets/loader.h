#ifndef VORNIK_ASSETS_LOADER_H
#define VORNIK_ASSETS_LOADER_H

// A cursor over a .3DS file in memory.

#include <stdint.h>

#include "vornik/export.h"

/// Reads little-endian values, strings and chunk headers. It never fails: once the block is used up atEnd is
/// set, and every read returns a fixed harmless value. A value that straddles the end is read whole, so the
/// block needs VRK_LOADER_PADDING zero bytes behind it.
class VRK_API Loader
{
public:
    uint8_t* current;     ///< the cursor
    uint8_t* data;        ///< start of the block; not owned
    uint8_t* chunkStart;  ///< header of the most recent chunk
    int32_t size;         ///< of the block, bytes
    uint16_t chunkID;     ///< of the most recent chunk
    uint32_t chunkLength; ///< of the most recent chunk as stored, its 6 bytes of header included
    bool atEnd;           ///< the cursor has reached the end of the block

    /// An exhausted block.
    Loader();

    /// Starts on a block. @param block  [size + VRK_LOADER_PADDING], not owned, kept until the next initData
    void initData(char* block, int blockSize);
    /// Puts the cursor at the start of the block.
    void toStart();

    float getFloat(); ///< -1 at the end
    int getInt();     ///< 0 at the end
    short getShort(); ///< 0 at the end
    char getChar();   ///< 0 at the end
    /// Reads a zero-terminated text. @param buffer  [out], long enough; a text without terminator ends with
    /// the block
    /// @return bytes taken, the terminator included; 0 at the end, with buffer untouched
    int getString(char* buffer);
    /// The same into a buffer of a given size: what doesn't fit is passed over. @param capacity  at least 1
    int getString(char* buffer, int capacity);

    /// Reads a chunk header into chunkID and chunkLength.
    void getChunkID();
    /// Moves to the end of the most recent chunk, also on an exhausted block; not when nothing was read yet.
    void finishCurrentChunk();
    /// Reads a chunk header. @return whether it is the main chunk of a .3DS file
    bool checkFormat();
    /// Moves to the end of the most recent chunk. It trusts the stored length, except that it never moves
    /// outside the block.
    void skipChunk();
    /// Copies 32-bit values, but only from an exhausted block; in practice it does nothing.
    void copyFloat(void* buffer, int count);
};

enum
{
    VRK_LOADER_PADDING = 8 ///< zero bytes that the block of a Loader needs behind its size
};

/// The cursor that all readers of .3DS chunks share.
extern VRK_API Loader vrkLoader;

#endif
