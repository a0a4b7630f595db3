// Reading pack files through one buffered stream, a member at a time.

#include "vornik/assets/pack.h"

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "platform/file.h"

static_assert(sizeof(PackEntry) == VRK_PACK_ENTRY_SIZE, "records are read as they stand in the file");

FILE* packStream = nullptr;
PackEntry* packDirectory = nullptr;
uint32_t packEntryCount = 0;
uint32_t packDirectorySize = 0;
uint32_t packStreamPos = 0;

static const uint32_t endMark = 0xFFFFFFFF;

static void upperCase(char* text)
{
    for (; *text; ++text)
        *text = static_cast<char>(std::toupper(static_cast<unsigned char>(*text)));
}

// Reads records up to the end mark or the end of the file; what the file ends with is a record, too.
// @return their number, 0 if they make no directory
static uint32_t readRecords(FILE* stream, PackEntry* records)
{
    for (uint32_t count = 0; count < VRK_PACK_MOST_ENTRIES;)
    {
        PackEntry& record = records[count];
        const size_t read = std::fread(&record, 1, sizeof record, stream);
        if (count == 0 && read < sizeof record)
            return 0;
        record.name[sizeof record.name - 1] = 0;
        upperCase(record.name);
        ++count;
        if (record.start == endMark || read < sizeof record)
            return count;
    }
    return 0;
}

int packOpen(const char* name)
{
    // Readers leave a pack open where a member is missing: its stream and directory end here.
    packClose();
    packDirectorySize = packStreamPos = packEntryCount = 0;

    const std::unique_ptr<PackEntry[]> records(new (std::nothrow) PackEntry[VRK_PACK_MOST_ENTRIES]());
    FILE* stream = records ? vrkOpenFile(name, "rb") : nullptr;
    if (!stream)
        return 1;
    const uint32_t count = readRecords(stream, records.get());
    const size_t bytes = count * sizeof(PackEntry);
    auto* directory = static_cast<PackEntry*>(count > 0 ? std::malloc(bytes) : nullptr);
    if (!directory)
    {
        std::fclose(stream);
        return 1;
    }

    std::memcpy(directory, records.get(), bytes);
    packStream = stream;
    packDirectory = directory;
    packEntryCount = count;
    packDirectorySize = packStreamPos = static_cast<uint32_t>(bytes);
    return 0;
}

int packClose()
{
    if (!packStream)
        return 0;
    std::free(packDirectory);
    packDirectory = nullptr;
    std::fclose(packStream);
    packStream = nullptr;
    return 0;
}

int packFindEntry(const char* name)
{
    if (!name || !packDirectory || std::strlen(name) > VRK_PACK_LONGEST_NAME)
        return -1;
    char upper[VRK_PACK_LONGEST_NAME + 1];
    std::strcpy(upper, name);
    upperCase(upper);
    for (uint32_t i = 0; i < packEntryCount; ++i)
        if (std::strcmp(packDirectory[i].name, upper) == 0)
            return static_cast<int>(i);
    return -1;
}

PackHandle* packFileOpen(const char* name, const char* /*mode*/)
{
    if (!packStream)
        return nullptr;
    const int index = packFindEntry(name);
    if (index < 0)
        return nullptr;
    return new (std::nothrow) PackHandle{packDirectory[index].start, static_cast<uint32_t>(index)};
}

int packFileClose(PackHandle* handle)
{
    if (!handle)
        return 0;
    delete handle;
    return 1;
}

// Null without a pack, and for a handle of another one that had more members.
static const PackEntry* entryOf(const PackHandle* handle)
{
    if (!packStream || !packDirectory || !handle || handle->entryIndex >= packEntryCount)
        return nullptr;
    return &packDirectory[handle->entryIndex];
}

uint32_t packFileSize(const PackHandle* handle)
{
    const PackEntry* entry = entryOf(handle);
    return entry ? entry->end - entry->start + 1 : 0;
}

size_t packFileRead(void* buffer, size_t size, size_t count, PackHandle* handle)
{
    if (!packStream || !buffer || !handle)
        return 0;
    if (size != 0 && count > SIZE_MAX / size)
        return 0;

    size_t read = 0;
    const uint64_t place = static_cast<uint64_t>(handle->position) + packDirectorySize;
    if (handle->position == packStreamPos || vrkSeek(packStream, place))
        read = std::fread(buffer, size, count, packStream);
    handle->position += static_cast<uint32_t>(size * count);
    packStreamPos = static_cast<uint32_t>(vrkTell(packStream)) - packDirectorySize;
    return read;
}

int packFileEof(const PackHandle* handle)
{
    const PackEntry* entry = entryOf(handle);
    return !entry || static_cast<int32_t>(handle->position) > static_cast<int32_t>(entry->end);
}
