// A folder that lives as long as the test that made it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class TempFolder
{
public:
    TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder();

    /// Path of a name inside, with forward slashes.
    std::string path(const std::string& name) const;
    /// Writes a file, making its folders. @return its path
    std::string write(const std::string& name, const std::vector<uint8_t>& bytes) const;
    std::string write(const std::string& name, const std::string& text) const;
    /// Content of a file, empty if there is none.
    std::string read(const std::string& name) const;
    /// The same for text, whose lines end in a line feed alone whatever the system writes.
    std::string readText(const std::string& name) const;

    const std::string& root() const { return folder; }

private:
    std::string folder;
};
