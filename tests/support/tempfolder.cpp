#include "tests/support/tempfolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

TempFolder::TempFolder()
{
    std::string name = (fs::temp_directory_path() / "vornik-XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::runtime_error("no temporary folder: " + name);
    folder = name;
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

std::string TempFolder::path(const std::string& name) const
{
    return folder + "/" + name;
}

std::string TempFolder::write(const std::string& name, const std::vector<uint8_t>& bytes) const
{
    return write(name, std::string(bytes.begin(), bytes.end()));
}

std::string TempFolder::write(const std::string& name, const std::string& text) const
{
    const fs::path file = path(name);
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!stream)
        throw std::runtime_error("can't write " + file.string());
    return file.string();
}

std::string TempFolder::read(const std::string& name) const
{
    std::ifstream stream(path(name), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}
