// The cursor over a .3DS file in memory. Reads have no error path: behind the end they answer with a
// constant, so that a truncated file stops every parsing loop in the same way.

#include "vornik/assets/loader.h"

#include <string.h>

#include "assets/loadervalues.h"

Loader vrkLoader;

Loader::Loader()
    : current(nullptr), data(nullptr), chunkStart(nullptr), size(0), chunkID(0), chunkLength(0), atEnd(true)
{
}

void Loader::initData(char* block, int blockSize)
{
    atEnd = false;
    size = blockSize;
    data = reinterpret_cast<uint8_t*>(block);
    current = data;
}

void Loader::toStart()
{
    atEnd = false;
    current = data;
}

float Loader::getFloat()
{
    return readFloat(*this);
}

int Loader::getInt()
{
    return readInt(*this);
}

short Loader::getShort()
{
    return readShort(*this);
}

char Loader::getChar()
{
    return atEnd ? 0 : static_cast<char>(static_cast<int8_t>(takeBytes<1>(*this)));
}

// Bytes of the text at the cursor without its terminator, and with what ends it.
static int textLength(const Loader& loader, int* consumed)
{
    const auto rest = static_cast<size_t>(loader.data + loader.size - loader.current);
    const void* zero = memchr(loader.current, 0, rest);
    const int length = static_cast<int>(zero ? static_cast<const uint8_t*>(zero) - loader.current : rest);
    *consumed = zero ? length + 1 : length;
    return length;
}

int Loader::getString(char* buffer)
{
    return getString(buffer, INT32_MAX);
}

int Loader::getString(char* buffer, int capacity)
{
    if (atEnd)
        return 0;
    int consumed = 0;
    const int length = textLength(*this, &consumed);
    const int kept = length < capacity ? length : capacity - 1;
    memcpy(buffer, current, static_cast<size_t>(kept));
    buffer[kept] = 0;
    current += consumed;
    noteEnd(*this);
    return consumed;
}

void Loader::getChunkID()
{
    if (atEnd)
        return;
    chunkStart = current;
    chunkID = static_cast<uint16_t>(takeBytes<2>(*this));
    chunkLength = atEnd ? 0 : takeBytes<4>(*this);
}

bool Loader::checkFormat()
{
    if (atEnd)
        return false;
    getChunkID();
    return chunkID == 0x4D4D;
}

// The end of the most recent chunk. A length that leads out of the block leads to its end; a chunk of another
// block gives null.
static uint8_t* chunkEnd(const Loader& loader)
{
    uint8_t* end = loader.data + loader.size;
    if (loader.chunkStart < loader.data || loader.chunkStart > end)
        return nullptr;
    return static_cast<int64_t>(loader.chunkLength) < end - loader.chunkStart
               ? loader.chunkStart + loader.chunkLength
               : end;
}

void Loader::finishCurrentChunk()
{
    if (current == data)
        return;
    if (uint8_t* end = chunkEnd(*this))
        current = end;
    noteEnd(*this);
}

void Loader::skipChunk()
{
    if (atEnd)
        return;
    if (uint8_t* end = chunkEnd(*this))
        current = end;
    noteEnd(*this);
}

void Loader::copyFloat(void* buffer, int count)
{
    if (!atEnd || count <= 0)
        return;
    const int64_t bytes = 4 * static_cast<int64_t>(count);
    if (bytes >= data + size - current)
        return;
    memcpy(buffer, current, static_cast<size_t>(bytes));
    current += bytes;
    noteEnd(*this);
}
