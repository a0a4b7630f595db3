// Starts another program and leaves the waiting to the caller.
#pragma once

#include <windows.h>

#include "tests/support/process.h"

/// @return the process, to be closed; null if it can't be started
HANDLE startProcess(const std::vector<std::string>& command, const std::string& folder,
                    const ProcessFiles& files);
