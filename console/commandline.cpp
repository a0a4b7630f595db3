#include "console/commandline.h"

#include <algorithm>

int CommandLine::countSpaces() const
{
    return static_cast<int>(std::count(line.begin(), line.end(), ' '));
}

std::string CommandLine::getWord(int index) const
{
    size_t start = 0;
    for (int i = 0; i < index; ++i)
    {
        const size_t space = line.find(' ', start);
        if (space == std::string::npos)
            return "";
        start = space + 1;
    }
    return line.substr(start, line.find(' ', start) - start);
}
