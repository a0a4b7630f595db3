#ifndef VORNIK_CORE_ERRORLOG_H
#define VORNIK_CORE_ERRORLOG_H

// The one place that every reported condition goes through. A failing function ends by returning what
// vrkPutToErrorLog(text, number) returned; informational lines use number 0 or 50.

#include <stdint.h>
#include <stdio.h>

#include "vornik/export.h"

class Console;

/// Where reports go, and the state of the log.
struct VRKError
{
    FILE* file;        ///< handle of the last open; closed again at once
    int32_t mode;      ///< 0 file, 1 yes-or-no question, 2 console, anything else nowhere
    char fileName[64]; ///< log file of mode 0
    Console* console;  ///< sink of mode 2; not owned
};

/// What the engine is.
struct VRKInfo
{
    /// Of the engine.
    int16_t majorVersion, minorVersion;
    char text[1024]; ///< lines that end in a line feed
};

/// The log; change it by vrkInitErrorLog.
extern VRK_API VRKError vrkError;

/// Reports go to a file, which is opened for appending at each report and never truncated.
/// @param fileName  cut to 63 characters
VRK_API void vrkInitErrorLog(const char* fileName);
/// Reports go to a console. @param console  not owned; may be null, then reports are dropped
VRK_API void vrkInitErrorLog(Console* console);
/// Sets the sink by number; see VRKError::mode.
VRK_API void vrkInitErrorLog(int mode);

/// Writes a line to the sink. With the question sink the answer No ends the process with exit(0).
/// @param message  cut to what fits 1024 bytes
/// @return number, always
VRK_API int vrkPutToErrorLog(const char* message, int number);

/// Version and capabilities of the engine. @param info  [out]
VRK_API void vrkInfo(VRKInfo* info);

#endif
