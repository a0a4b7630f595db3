#include "console/text.h"

#include <cctype>
#include <charconv>
#include <climits>
#include <cmath>

static char upperCase(char c)
{
    // Commands are found whatever a locale thinks of the letters of ASCII; some turn i into another one.
    if (c >= 'a' && c <= 'z')
        return static_cast<char>(c - 'a' + 'A');
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x80 ? c : static_cast<char>(std::toupper(byte));
}

std::string upperCase(const std::string& text)
{
    std::string raised = text;
    for (char& c : raised)
        c = upperCase(c);
    return raised;
}

int truncatedInt(float value)
{
    if (std::isnan(value))
        return 0;
    // The first float above the ints is 2 to the power of 31.
    if (value >= 2147483648.0f)
        return INT_MAX;
    return value <= -2147483648.0f ? INT_MIN : static_cast<int>(value);
}

std::string decimal(float value)
{
    char digits[64]; // 39 before the point, six behind it
    const auto result = std::to_chars(digits, digits + sizeof digits, static_cast<double>(value),
                                      std::chars_format::fixed, 6);
    return {digits, result.ptr};
}

std::string hexadecimal(uint64_t value)
{
    char digits[16];
    const auto result = std::to_chars(digits, digits + sizeof digits, static_cast<uint32_t>(value), 16);
    return {digits, result.ptr};
}

std::string hexadecimal(const void* pointer)
{
    return hexadecimal(static_cast<uint64_t>(reinterpret_cast<uintptr_t>(pointer)));
}
