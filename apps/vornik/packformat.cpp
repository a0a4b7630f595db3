#include "apps/vornik/packformat.h"

#include <algorithm>
#include <cctype>
#include <ostream>
#include <set>
#include <sstream>

enum : uint32_t
{
    recordSize = 264,
    longestName = 255
};

static const char filler = '\n';

static void appendNumber(std::vector<uint8_t>* bytes, uint32_t value)
{
    for (int shift = 0; shift < 32; shift += 8)
        bytes->push_back(static_cast<uint8_t>(value >> shift));
}

void appendPackRecord(std::vector<uint8_t>* directory, uint32_t start, uint32_t end, const std::string& name)
{
    appendNumber(directory, start);
    appendNumber(directory, end);
    const size_t field = recordSize - 8;
    const std::string kept = name.substr(0, field);
    directory->insert(directory->end(), kept.begin(), kept.end());
    directory->resize(directory->size() + field - kept.size());
}

std::string upperName(std::string name)
{
    for (char& c : name)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return name;
}

std::string memberName(const std::string& path)
{
    std::string name = upperName(path);
    std::replace(name.begin(), name.end(), '/', '\\');
    return name;
}

bool isImageList(const std::string& name)
{
    return name.size() >= 4 && upperName(name.substr(name.size() - 4)) == ".IFL";
}

static std::string problemOfNames(const std::vector<PackMember>& members)
{
    if (members.size() > mostPackMembers)
        return std::to_string(members.size()) + " files are too many: a pack holds " +
               std::to_string(mostPackMembers);
    std::set<std::string> names;
    for (const PackMember& member : members)
    {
        if (member.name.empty())
            return "a member without a name";
        if (member.name.size() > longestName)
            return member.name + ": the name is longer than " + std::to_string(longestName) + " bytes";
        if (!names.insert(upperName(member.name)).second)
            return member.name + ": two files of this name";
    }
    return "";
}

std::string layOutPack(std::vector<PackMember>* members)
{
    std::string problem = problemOfNames(*members);
    if (!problem.empty())
        return problem;

    // Readers compare the end of a list with a signed number, which fits the first half of a pack only.
    std::stable_partition(members->begin(), members->end(),
                          [](const PackMember& member) { return isImageList(member.name); });
    const uint64_t directorySize = (members->size() + 1) * recordSize;
    uint64_t place = 0;
    for (PackMember& member : *members)
    {
        place += place == directorySize;
        if (member.size > packEndMark || directorySize + place + member.size >= packEndMark)
            return "the files are larger than 4 GiB together";
        member.start = static_cast<uint32_t>(place);
        place += member.size + isImageList(member.name);
    }
    return "";
}

static std::vector<uint8_t> encodeDirectory(const std::vector<PackMember>& members)
{
    std::vector<uint8_t> directory;
    for (const PackMember& member : members)
        appendPackRecord(&directory, member.start, static_cast<uint32_t>(member.start + member.size - 1),
                         member.name);
    appendPackRecord(&directory, packEndMark, packEndMark - 1, ""); // of size 0
    return directory;
}

bool writePack(std::ostream& out, const std::vector<PackMember>& members,
               const std::function<bool(const PackMember&, std::ostream&)>& copy)
{
    const std::vector<uint8_t> directory = encodeDirectory(members);
    out.write(reinterpret_cast<const char*>(directory.data()),
              static_cast<std::streamsize>(directory.size()));
    uint64_t place = 0;
    for (const PackMember& member : members)
    {
        for (; place < member.start; ++place)
            out.put(filler);
        if (!copy(member, out))
            return false;
        place += member.size;
        if (isImageList(member.name))
        {
            out.put(filler);
            ++place;
        }
    }
    return out.good();
}

std::string buildPack(const std::vector<PackContent>& files)
{
    std::vector<PackMember> members;
    members.reserve(files.size());
    for (const PackContent& file : files)
        members.push_back({file.name, file.bytes.size(), members.size()});
    if (!layOutPack(&members).empty())
        return "";
    std::ostringstream out;
    writePack(out, members,
              [&files](const PackMember& member, std::ostream& stream)
              {
                  const std::string& bytes = files[member.source].bytes;
                  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
                  return true;
              });
    return out.str();
}
