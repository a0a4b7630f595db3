#include "vornik/core/errorlog.h"

#include <cstdlib>
#include <cstring>

#include "platform/file.h"
#include "platform/question.h"
#include "vornik/console/console.h"

VRKError vrkError;

enum
{
    logToFile = 0,
    logToQuestion = 1,
    logToConsole = 2,
    logNowhere = 3
};

void vrkInitErrorLog(const char* fileName)
{
    // The name may be the record's own.
    const size_t length = fileName ? strnlen(fileName, sizeof vrkError.fileName - 1) : 0;
    if (length > 0)
        std::memmove(vrkError.fileName, fileName, length);
    vrkError.fileName[length] = 0;
    vrkError.mode = logToFile;
}

void vrkInitErrorLog(Console* console)
{
    vrkError.console = console;
    vrkError.mode = logToConsole;
}

void vrkInitErrorLog(int mode)
{
    vrkError.mode = mode;
}

static void appendToFile(const char* text)
{
    vrkError.file = vrkOpenFile(vrkError.fileName, "at");
    if (!vrkError.file)
        return;
    std::fwrite(text, std::strlen(text), 1, vrkError.file);
    // Closed after every line, so that the log survives a crash of the host.
    std::fclose(vrkError.file);
}

static void askToContinue(const char* text)
{
    char question[1100];
    std::snprintf(question, sizeof question, "%s\nContinue?\n", text);
    if (!vrkPlatformAsk("VRK Error", question))
        std::exit(0);
}

int vrkPutToErrorLog(const char* message, int number)
{
    if (vrkError.mode == logNowhere)
        return number;

    // Cut so that the line feed always fits.
    char line[1024];
    std::snprintf(line, sizeof line - 1, "%s", message);
    std::strcat(line, "\n");

    if (vrkError.mode == logToFile)
        appendToFile(line);
    else if (vrkError.mode == logToQuestion)
        askToContinue(line);
    else if (vrkError.mode == logToConsole && vrkError.console)
        vrkError.console->addText(line);
    return number;
}

void vrkInfo(VRKInfo* info)
{
    info->majorVersion = 0;
    info->minorVersion = 1;
    std::snprintf(info->text, sizeof info->text,
                  "Vornik real-time 3D engine\n"
                  "Rasterizer support: OpenGL, Direct3D\n"
                  "Fileformat support: .3DS\n"
                  "Texture format support: .JPG, .TGA, .IFL\n"
                  "Mesh format support: .3DS\n");
}
