#include "tests/support/germanlocale.h"

#include <clocale>

bool setGermanLocale(const std::string& /*folder*/)
{
    return std::setlocale(LC_ALL, "German_Germany") != nullptr;
}
