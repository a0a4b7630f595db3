#pragma once

#include <string>

/// Makes numbers German. @param folder  for what has to be made first
/// @return false if the system can't
bool setGermanLocale(const std::string& folder);
