#pragma once

#include <string>

#include <gtest/gtest.h>

#include "platform/file.h"
#include "tests/support/tempfolder.h"

class OpenFile : public ::testing::Test
{
protected:
    // Content of the file that a name inside the folder opens; "(none)" if it opens none.
    std::string content(const std::string& name) const
    {
        FILE* file = vrkOpenFile(folder.path(name).c_str(), "rb");
        if (!file)
            return "(none)";
        char buffer[64];
        const size_t size = fread(buffer, 1, sizeof buffer, file);
        fclose(file);
        return std::string(buffer, size);
    }

    TempFolder folder;
};
