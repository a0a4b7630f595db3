// vornik pack list, extract and verify.

#include "apps/vornik/pack.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>

#include "apps/vornik/packcopy.h"
#include "apps/vornik/packdirectory.h"
#include "apps/vornik/packformat.h"
#include "apps/vornik/text.h"

namespace fs = std::filesystem;

int packList(const PackOptions& options)
{
    PackFile pack;
    const std::string problem = readPackFile(options.pack, &pack);
    if (!problem.empty())
        return fail(problem);
    uint64_t total = 0;
    for (const PackRecord& record : pack.records)
    {
        const uint64_t size = record.endsBeforeStart() ? 0 : record.size();
        std::printf("%10llu  %s\n", static_cast<unsigned long long>(size), printable(record.name).c_str());
        total += size;
    }
    std::printf("%10llu  bytes in %zu members\n", static_cast<unsigned long long>(total),
                pack.records.size());
    return 0;
}

int packVerify(const PackOptions& options)
{
    PackFile pack;
    const std::string problem = readPackFile(options.pack, &pack);
    if (!problem.empty())
        return fail(problem);
    const std::vector<std::string> faults = faultsOf(pack);
    for (const std::string& fault : faults)
        std::printf("%s\n", printable(fault).c_str());
    if (!faults.empty())
        return fail(options.pack + ": " + std::to_string(faults.size()) +
                    (faults.size() == 1 ? " fault" : " faults"));
    std::printf("%s: sound, %zu members\n", printable(options.pack).c_str(), pack.records.size());
    return 0;
}

// Where a member goes below the target folder; empty if its name could lead out of it or means something else
// to a system: climbing folders, drives and streams, control characters.
static fs::path safePath(const std::string& name)
{
    fs::path path;
    std::string component;
    for (const char c : name + "\\")
    {
        if (static_cast<unsigned char>(c) < ' ' || c == ':' || c == 0x7F)
            return {};
        if (c != '\\' && c != '/')
        {
            component += c;
            continue;
        }
        if (component == "..")
            return {};
        if (!component.empty() && component != ".")
            path /= component;
        component.clear();
    }
    const bool isFolder = name.empty() || name.back() == '\\' || name.back() == '/';
    return isFolder ? fs::path() : path;
}

// Links that stand in the way could lead out of the folder, too.
static bool passesLink(const fs::path& folder, const fs::path& below)
{
    fs::path path = folder;
    std::error_code failed;
    for (const fs::path& component : below)
    {
        path /= component;
        if (fs::is_symlink(fs::symlink_status(path, failed)))
            return true;
    }
    return false;
}

// @param taken  the files of earlier members
// @return what went wrong; empty if nothing did
static std::string extractMember(const PackFile& pack, const PackRecord& record, const PackOptions& options,
                                 std::set<fs::path>* taken, CopyProgress* progress)
{
    const fs::path below = safePath(record.name);
    if (below.empty() || passesLink(options.into, below))
        return "the name leads out of the folder";
    if (!pack.isWhole(record))
        return "the pack ends before the member";
    if (!taken->insert(below).second)
        return "an earlier member has this file";
    const fs::path target = fs::path(options.into) / below;
    std::error_code failed;
    if (fs::exists(target, failed) && (!options.force || !fs::is_regular_file(target, failed)))
        return target.string() + " exists already";
    fs::create_directories(target.parent_path(), failed);

    std::ifstream in(pack.path, std::ios::binary);
    in.seekg(static_cast<std::streamoff>(pack.directorySize + record.start));
    std::ofstream out(target, std::ios::binary | std::ios::trunc);
    if (!copyBytes(in, out, record.size(), progress) || !out.flush())
        return "can't be written";
    return "";
}

// The records to extract: the first of each name, as the engine sees them.
static std::vector<PackRecord> choose(const PackFile& pack, std::set<std::string>* wanted)
{
    const bool all = wanted->empty();
    std::set<std::string> seen;
    std::vector<PackRecord> chosen;
    for (const PackRecord& record : pack.records)
    {
        const bool first = seen.insert(upperName(record.name)).second;
        if (first && (all || wanted->erase(memberName(record.name)) > 0))
            chosen.push_back(record);
    }
    return chosen;
}

int packExtract(const PackOptions& options)
{
    PackFile pack;
    const std::string problem = readPackFile(options.pack, &pack);
    if (!problem.empty())
        return fail(problem);
    std::set<std::string> wanted;
    for (const std::string& name : options.names)
        wanted.insert(memberName(name));
    const std::vector<PackRecord> chosen = choose(pack, &wanted);

    int status = 0;
    for (const std::string& name : wanted)
        status = fail(name + ": not in the pack");
    uint64_t total = 0;
    for (const PackRecord& record : chosen)
        total += record.size();
    CopyProgress progress(total);
    std::set<fs::path> taken;
    size_t done = 0;
    for (const PackRecord& record : chosen)
    {
        const std::string fault = extractMember(pack, record, options, &taken, &progress);
        if (fault.empty())
            ++done;
        else
            status = fail(record.name + ": " + fault);
    }
    std::printf("%zu of %zu members extracted\n", done, chosen.size() + wanted.size());
    return status;
}
