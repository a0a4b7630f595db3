#include "tests/support/germanlocale.h"

#include <clocale>
#include <cstdlib>

bool setGermanLocale(const std::string& folder)
{
    if (std::system(("localedef -i de_DE -f UTF-8 '" + folder + "/de_DE' > /dev/null 2>&1").c_str()) < 0)
        return false;
    setenv("LOCPATH", folder.c_str(), 1);
    const bool isSet = std::setlocale(LC_ALL, "de_DE") != nullptr;
    unsetenv("LOCPATH");
    return isSet;
}
