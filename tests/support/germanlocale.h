#pragma once

#include <clocale>
#include <string>

#include "tests/support/tempfolder.h"

/// Makes numbers German. @param folder  for what has to be made first
/// @return false if the system can't
bool setGermanLocale(const std::string& folder);

/// German numbers while it lives, and the old ones afterwards.
struct GermanScope
{
    GermanScope() : before(std::setlocale(LC_ALL, nullptr)), isSet(setGermanLocale(folder.root())) {}
    GermanScope(const GermanScope&) = delete;
    GermanScope& operator=(const GermanScope&) = delete;
    ~GermanScope() { std::setlocale(LC_ALL, before.c_str()); }

    const std::string before;
    TempFolder folder;
    bool isSet;
};
