#include "tests/support/tempfolder.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

namespace fs = std::filesystem;

TempFolder::TempFolder()
{
    std::random_device random;
    fs::path path;
    do
        path = fs::temp_directory_path() / ("vornik-" + std::to_string(random()));
    while (!fs::create_directory(path));
    folder = path.generic_string();
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

static std::string readAll(const std::string& path, std::ios::openmode mode)
{
    std::ifstream stream(path, mode);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

std::string TempFolder::read(const std::string& name) const
{
    return readAll(path(name), std::ios::binary);
}

std::string TempFolder::readText(const std::string& name) const
{
    return readAll(path(name), std::ios::in);
}
