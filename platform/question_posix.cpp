#include "platform/question.h"

#include <cstdio>
#include <unistd.h>

// First character of the next line of standard input, the rest of the line dropped; 0 at its end.
static int answer()
{
    const int first = std::getchar();
    for (int c = first; c != '\n'; c = std::getchar())
        if (c == EOF)
            return 0;
    return first;
}

bool vrkPlatformAsk(const char* caption, const char* text)
{
    if (!isatty(STDIN_FILENO) || !isatty(STDERR_FILENO))
    {
        std::fputs(text, stderr);
        return true;
    }

    for (;;)
    {
        std::fprintf(stderr, "%s\n%s[y/n] ", caption, text);
        std::fflush(stderr);
        switch (answer())
        {
        case 'y':
        case 'Y':
        case 0:
            return true;
        case 'n':
        case 'N':
            return false;
        default:
            break; // asked again
        }
    }
}
