#include "apps/vornik/packmember.h"

#include <algorithm>
#include <filesystem>

#include "apps/vornik/packformat.h"
#include "vornik/vornik.h"

// The pack, open while this lives.
class OpenPack
{
public:
    explicit OpenPack(const std::string& pack) : isOpen(packOpen(pack.c_str()) == 0) {}
    OpenPack(const OpenPack&) = delete;
    OpenPack& operator=(const OpenPack&) = delete;
    ~OpenPack() { packClose(); }

    /// The first name that a test holds for; empty if there is none.
    template <typename Test>
    std::string find(Test test) const
    {
        for (uint32_t i = 0; isOpen && i < packEntryCount; ++i)
            if (test(std::string(packDirectory[i].name)))
                return packDirectory[i].name;
        return "";
    }

    const bool isOpen;
};

static bool endsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::string findMember(const std::string& pack, const std::string& name)
{
    const OpenPack open(pack);
    if (name.empty() || !open.isOpen)
        return "";
    if (packFindEntry(name.c_str()) >= 0)
        return name;
    const std::string upper = memberName(name);
    const std::string whole = open.find([&](const std::string& member) { return member == upper; });
    return !whole.empty()
               ? whole
               : open.find([&](const std::string& member) { return endsWith(member, "\\" + upper); });
}

std::string readMember(const std::string& pack, const std::string& name, std::vector<uint8_t>* bytes)
{
    const OpenPack open(pack);
    if (!open.isOpen)
        return pack + ": can't be opened as a pack";
    PackHandle* handle = packFileOpen(name.c_str(), "rb");
    if (!handle)
        return name + ": not in " + pack;
    // A record may claim any size; the file has what it has.
    std::error_code failed;
    const uint64_t length = std::filesystem::file_size(pack, failed);
    bytes->resize(std::min<uint64_t>(packFileSize(handle), failed ? 0 : length));
    bytes->resize(packFileRead(bytes->data(), 1, bytes->size(), handle));
    packFileClose(handle);
    return "";
}

std::string folderOf(const std::string& name)
{
    const size_t end = name.find_last_of("\\/");
    return end == std::string::npos ? "." : name.substr(0, end);
}

std::string findFolder(const std::string& pack, const std::string& folder, const std::string& member)
{
    std::string plain = memberName(folder);
    while (!plain.empty() && plain.back() == '\\')
        plain.pop_back();
    const OpenPack open(pack);
    for (const std::string& candidate : {plain, folderOf(member) + "\\" + plain})
        if (!open.find([&](const std::string& name) { return name.rfind(candidate + "\\", 0) == 0; }).empty())
            return candidate;
    return "";
}

bool hasMemberOfFile(const std::string& pack, const std::string& file)
{
    const std::string last = memberName(file.substr(file.find_last_of("\\/") + 1));
    const OpenPack open(pack);
    return !open.find([&](const std::string& name)
                      { return memberName(name.substr(name.find_last_of("\\/") + 1)) == last; })
                .empty();
}
