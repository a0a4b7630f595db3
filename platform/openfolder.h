// A folder being read, closed however the reading ends.
#pragma once

#include <memory>

#include <dirent.h>

struct CloseFolder
{
    void operator()(DIR* folder) const { closedir(folder); }
};

using OpenFolder = std::unique_ptr<DIR, CloseFolder>;
