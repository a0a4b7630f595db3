#pragma once

#include <filesystem>
#include <string>

/// Runs a test in a folder, where the default log file then lies.
class WorkingFolder
{
public:
    explicit WorkingFolder(const std::string& folder) : before(std::filesystem::current_path())
    {
        std::filesystem::current_path(folder);
    }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;
    ~WorkingFolder() { std::filesystem::current_path(before); }

private:
    std::filesystem::path before;
};
