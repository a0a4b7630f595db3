// vornik pack create: the members that a list of files and folders makes, and the pack that holds them.

#include "apps/vornik/pack.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "apps/vornik/packcopy.h"
#include "apps/vornik/packformat.h"
#include "apps/vornik/text.h"

namespace fs = std::filesystem;

struct Input
{
    fs::path path;
    fs::path folder; // the one it was given with
};

static fs::path plainPath(const std::string& name)
{
    fs::path path = fs::absolute(name).lexically_normal();
    return path.has_filename() ? path : path.parent_path();
}

// @return what is wrong; empty if nothing is
static std::string collect(const std::string& name, std::vector<Input>* inputs)
{
    std::error_code failed;
    const fs::path path = plainPath(name);
    if (fs::is_regular_file(path, failed))
    {
        inputs->push_back({path, path.parent_path()});
        return "";
    }
    if (!fs::is_directory(path, failed))
        return name + ": no such file";
    std::vector<fs::path> found;
    for (auto entry = fs::recursive_directory_iterator(path, failed); !failed && entry != fs::end(entry);
         entry.increment(failed))
        if (entry->is_regular_file())
            found.push_back(entry->path());
    if (failed)
        return name + ": can't be read";
    std::sort(found.begin(), found.end());
    for (const fs::path& file : found)
        inputs->push_back({file, path});
    return "";
}

static fs::path sharedFolder(const fs::path& a, const fs::path& b)
{
    fs::path shared;
    for (auto i = a.begin(), j = b.begin(); i != a.end() && j != b.end() && *i == *j; ++i, ++j)
        shared /= *i;
    return shared;
}

static fs::path chooseRoot(const PackOptions& options, const std::vector<Input>& inputs)
{
    if (!options.root.empty())
        return plainPath(options.root);
    fs::path root = inputs.front().folder;
    for (const Input& input : inputs)
        root = sharedFolder(root, input.folder);
    return root;
}

static std::string prefixOf(const PackOptions& options)
{
    std::string prefix = memberName(options.prefix);
    while (!prefix.empty() && prefix.back() == '\\')
        prefix.pop_back();
    return prefix.empty() ? "" : prefix + "\\";
}

// @return what is wrong; empty if nothing is
static std::string nameMembers(const PackOptions& options, const std::vector<Input>& inputs,
                               std::vector<PackMember>* members)
{
    const fs::path root = chooseRoot(options, inputs);
    const std::string prefix = prefixOf(options);
    for (const Input& input : inputs)
    {
        const fs::path name = input.path.lexically_relative(root);
        if (name.empty() || *name.begin() == "..")
            return input.path.string() + ": lies outside of " + root.string();
        std::error_code failed;
        const uint64_t size = fs::file_size(input.path, failed);
        if (failed)
            return input.path.string() + ": can't be read";
        members->push_back({prefix + memberName(name.string()), size, members->size()});
    }
    return layOutPack(members);
}

// @return what went wrong; empty if nothing did
static std::string writeFile(const fs::path& path, const std::vector<Input>& inputs,
                             const std::vector<PackMember>& members)
{
    uint64_t total = 0;
    for (const PackMember& member : members)
        total += member.size;
    CopyProgress progress(total);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    std::string problem;
    const bool written = writePack(out, members,
                                   [&](const PackMember& member, std::ostream& stream)
                                   {
                                       const fs::path& source = inputs[member.source].path;
                                       std::ifstream in(source, std::ios::binary);
                                       if (copyBytes(in, stream, member.size, &progress))
                                           return true;
                                       if (stream)
                                           problem = source.string() + ": can't be read";
                                       return false;
                                   });
    out.close();
    if (problem.empty() && (!written || !out))
        problem = "can't be written";
    return problem;
}

int packCreate(const PackOptions& options)
{
    std::vector<Input> inputs;
    for (const std::string& file : options.files)
    {
        const std::string problem = collect(file, &inputs);
        if (!problem.empty())
            return fail(problem);
    }
    if (inputs.empty())
        return fail("there are no files to pack");
    const fs::path output = plainPath(options.pack);
    for (const Input& input : inputs)
        if (input.path == output)
            return fail(options.pack + ": a pack can't hold itself");
    std::vector<PackMember> members;
    std::string problem = nameMembers(options, inputs, &members);
    if (!problem.empty())
        return fail(problem);

    // An earlier pack of the name stays until the new one is whole.
    const fs::path unfinished = output.string() + ".part";
    std::error_code failed;
    problem = writeFile(unfinished, inputs, members);
    if (problem.empty())
    {
        fs::rename(unfinished, output, failed);
        problem = failed ? "can't be written" : "";
    }
    if (!problem.empty())
    {
        fs::remove(unfinished, failed);
        return fail(options.pack + ": " + problem);
    }
    std::printf("%s: %zu members, %llu bytes\n", printable(options.pack).c_str(), members.size(),
                static_cast<unsigned long long>(fs::file_size(output, failed)));
    return 0;
}
