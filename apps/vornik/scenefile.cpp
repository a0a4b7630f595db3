#include "apps/vornik/scenefile.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "apps/vornik/packmember.h"

enum
{
    chunkHeader = 6,
    mainChunk = 0x4D4D,
    keyframeChunk = 0xB000
};

static std::string readLoose(const std::string& path, std::vector<uint8_t>* bytes)
{
    std::error_code ignored;
    std::ifstream stream(path, std::ios::binary);
    if (!std::filesystem::is_regular_file(path, ignored) || !stream.is_open())
        return path + ": can't be opened";
    bytes->assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    return "";
}

SceneFile readSceneFile(const std::string& path, const std::string& pack)
{
    SceneFile file;
    file.path = path;
    if (pack.empty())
        file.openProblem = readLoose(path, &file.bytes);
    else
    {
        file.pack = std::filesystem::absolute(pack).string();
        const std::string member = findMember(file.pack, path);
        file.path = member.empty() ? path : member;
        file.openProblem = readMember(pack, file.path, &file.bytes);
    }
    file.readable = file.openProblem.empty();
    if (file.bytes.size() >= chunkHeader)
        std::memcpy(&file.claimedLength, file.bytes.data() + 2, 4);
    return file;
}

SceneFault SceneFile::fault() const
{
    if (!readable)
        return SceneFault::unreadable;
    if (bytes.empty())
        return SceneFault::empty;
    if (bytes.size() < 2 || (bytes[0] | bytes[1] << 8) != mainChunk)
        return SceneFault::notAScene;
    return bytes.size() < chunkHeader || claimedLength > bytes.size() ? SceneFault::cut : SceneFault::none;
}

std::string SceneFile::faultText() const
{
    switch (fault())
    {
    case SceneFault::none:
        return "";
    case SceneFault::unreadable:
        return openProblem;
    case SceneFault::empty:
        return path + ": the file is empty";
    case SceneFault::notAScene:
        return path + ": not a .3DS file";
    case SceneFault::cut:
        break;
    }
    return path + ": the file is cut short: it has " + std::to_string(bytes.size()) + " bytes of " +
           std::to_string(claimedLength);
}

// Walks the children of a chunk and calls use(id, begin, end) with the range of each one's content.
template <typename Use>
static void forEachChunk(const std::vector<uint8_t>& bytes, size_t begin, size_t end, Use use)
{
    end = std::min(end, bytes.size());
    while (begin + chunkHeader <= end)
    {
        uint32_t length;
        std::memcpy(&length, &bytes[begin + 2], 4);
        if (length < chunkHeader)
            return;
        const int id = bytes[begin] | bytes[begin + 1] << 8;
        use(id, begin + chunkHeader, std::min<size_t>(begin + length, end));
        begin += length;
    }
}

static void countNode(const SceneFile& file, size_t begin, size_t end, KeyframeFigures* figures)
{
    ++figures->nodes;
    forEachChunk(file.bytes, begin, end,
                 [&](int id, size_t from, size_t to)
                 {
                     const char* text = reinterpret_cast<const char*>(file.bytes.data() + from);
                     const std::string dummy = "$$$DUMMY";
                     if (id == 0xB010 && to - from > dummy.size() &&
                         dummy.compare(0, dummy.size(), text, dummy.size()) == 0)
                         ++figures->dummies;
                     // Tracks of all kinds lie in B020 to B029; the key count stands behind ten bytes.
                     if (id < 0xB020 || id > 0xB029 || to - from < 14)
                         return;
                     uint32_t keys;
                     std::memcpy(&keys, &file.bytes[from + 10], 4);
                     ++figures->tracks;
                     figures->animatedTracks += keys > 1;
                     figures->keys += static_cast<int>(std::min<uint32_t>(keys, 0xFFFF));
                 });
}

KeyframeFigures countKeyframes(const SceneFile& file)
{
    KeyframeFigures figures;
    const auto countSection = [&](int id, size_t begin, size_t end)
    {
        if (id == 0xB008 && end - begin >= 8)
        {
            std::memcpy(&figures.firstFrame, &file.bytes[begin], 4);
            std::memcpy(&figures.lastFrame, &file.bytes[begin + 4], 4);
        }
        else if (id >= 0xB001 && id <= 0xB007)
            countNode(file, begin, end, &figures);
    };
    forEachChunk(file.bytes, chunkHeader, file.bytes.size(),
                 [&](int id, size_t begin, size_t end)
                 {
                     if (id == keyframeChunk)
                         forEachChunk(file.bytes, begin, end, countSection);
                 });
    return figures;
}
