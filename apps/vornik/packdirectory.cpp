#include "apps/vornik/packdirectory.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>

#include "apps/vornik/packformat.h"
#include "vornik/vornik.h"

static PackRecord decodeRecord(const char (&bytes)[VRK_PACK_ENTRY_SIZE])
{
    PackRecord record;
    std::memcpy(&record.start, bytes, 4);
    std::memcpy(&record.end, bytes + 4, 4);
    const size_t field = VRK_PACK_ENTRY_SIZE - 8;
    record.name.assign(bytes + 8, strnlen(bytes + 8, field));
    record.terminated = record.name.size() < field;
    return record;
}

std::string readPackFile(const std::string& path, PackFile* pack)
{
    std::error_code failed;
    pack->path = path;
    std::ifstream stream(path, std::ios::binary);
    if (!std::filesystem::is_regular_file(path, failed) || !stream.is_open())
        return path + ": can't be opened";
    pack->fileSize = std::filesystem::file_size(path, failed);

    for (int i = 0; i < VRK_PACK_MOST_ENTRIES; ++i)
    {
        char bytes[VRK_PACK_ENTRY_SIZE];
        const bool whole = static_cast<bool>(stream.read(bytes, sizeof bytes));
        if (!whole && i == 0)
            return path + ": not a pack file: it is shorter than one record";
        // Readers count what the file ends with as a record.
        pack->directorySize += sizeof bytes;
        if (!whole)
            return "";
        const PackRecord record = decodeRecord(bytes);
        pack->hasEndMark = record.start == packEndMark;
        if (pack->hasEndMark)
            return "";
        pack->records.push_back(record);
    }
    return path + ": not a pack file: no end mark among the first " + std::to_string(VRK_PACK_MOST_ENTRIES) +
           " records";
}

static void judgeRecord(const PackFile& pack, const PackRecord& record, std::vector<std::string>* faults)
{
    const auto add = [&](const std::string& fault) { faults->push_back(record.name + ": " + fault); };
    if (!record.terminated)
        add("the name has no end");
    if (record.name.empty())
        add("a member without a name");
    if (record.endsBeforeStart())
        return add("ends before it starts");
    if (!pack.isWhole(record))
        return add("lies past the end of the file, by " +
                   std::to_string(record.end + uint64_t{1} - pack.dataSize()) + " bytes");
    if (record.size() > 0 && record.start == pack.directorySize)
        add("starts at " + std::to_string(record.start) +
            ", the size of the directory: the first read gets other bytes");
    if (isImageList(record.name) && record.size() > 0 && record.end > INT32_MAX)
        add("a list beyond 2 GiB reads as empty");
}

static bool endsLine(int byte)
{
    return byte == '\n' || byte == 27;
}

// A list's last line goes on behind the list where nothing ends it.
static void judgeLists(const PackFile& pack, std::vector<std::string>* faults)
{
    std::ifstream stream(pack.path, std::ios::binary);
    for (const PackRecord& record : pack.records)
    {
        if (!isImageList(record.name) || !pack.isWhole(record) || record.size() == 0)
            continue;
        stream.clear();
        stream.seekg(static_cast<std::streamoff>(pack.directorySize + record.end));
        const int last = stream.get();
        if (!endsLine(last) && !endsLine(stream.get()))
            faults->push_back(record.name + ": the last line of the list has no line feed");
    }
}

static void findDuplicates(const PackFile& pack, std::vector<std::string>* faults)
{
    std::set<std::string> names;
    for (const PackRecord& record : pack.records)
        if (!names.insert(upperName(record.name)).second)
            faults->push_back(record.name + ": the name is taken by an earlier member");
}

static void findOverlaps(const PackFile& pack, std::vector<std::string>* faults)
{
    std::vector<const PackRecord*> byPlace;
    for (const PackRecord& record : pack.records)
        if (!record.endsBeforeStart() && record.size() > 0)
            byPlace.push_back(&record);
    std::stable_sort(byPlace.begin(), byPlace.end(),
                     [](const PackRecord* a, const PackRecord* b) { return a->start < b->start; });
    const PackRecord* furthest = nullptr;
    for (const PackRecord* record : byPlace)
    {
        if (furthest && record->start <= furthest->end)
            faults->push_back(record->name + ": overlaps " + furthest->name);
        if (!furthest || record->end > furthest->end)
            furthest = record;
    }
}

std::vector<std::string> faultsOf(const PackFile& pack)
{
    std::vector<std::string> faults;
    if (!pack.hasEndMark)
        faults.push_back("the end mark is missing");
    for (const PackRecord& record : pack.records)
        judgeRecord(pack, record, &faults);
    judgeLists(pack, &faults);
    findDuplicates(pack, &faults);
    findOverlaps(pack, &faults);
    return faults;
}
