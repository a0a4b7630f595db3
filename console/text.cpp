#include "console/text.h"

#include <cctype>
#include <charconv>
#include <climits>
#include <cmath>
#include <limits>

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

static bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Where a number's digits begin, behind blanks and a sign.
static const char* digitsOf(const std::string& text, bool* negative)
{
    const char* c = text.c_str();
    while (isBlank(*c))
        ++c;
    *negative = *c == '-';
    return *c == '-' || *c == '+' ? c + 1 : c;
}

// Which way a number lies outside a double. Without an exponent it would need more digits than a line has.
static double outOfRange(const std::string& digits)
{
    const size_t exponent = digits.find_last_of("eEpP");
    const bool small = exponent != std::string::npos && digits.compare(exponent + 1, 1, "-") == 0;
    return small ? 0.0 : std::numeric_limits<double>::infinity();
}

double numberFrom(const std::string& text)
{
    bool negative;
    const char* begin = digitsOf(text, &negative);
    const char* const end = text.c_str() + text.size();
    auto format = std::chars_format::general;
    if (begin[0] == '0' && (begin[1] == 'x' || begin[1] == 'X'))
    {
        format = std::chars_format::hex;
        begin += 2;
    }
    double value = 0.0;
    // A second sign would be taken as part of the digits.
    const auto [stop, error] = *begin == '-' ? std::from_chars_result{begin, std::errc::invalid_argument}
                                             : std::from_chars(begin, end, value, format);
    if (error == std::errc::invalid_argument)
        return 0.0;
    if (error == std::errc::result_out_of_range)
        value = outOfRange(std::string(begin, stop));
    return negative ? -value : value;
}

int integerFrom(const std::string& text)
{
    bool negative;
    const char* begin = digitsOf(text, &negative);
    int64_t value = 0;
    for (const char* c = begin; *c >= '0' && *c <= '9' && value <= INT_MAX; ++c)
        value = value * 10 + (*c - '0');
    if (negative)
        value = -value;
    return static_cast<int>(value < INT_MIN ? INT_MIN : value > INT_MAX ? INT_MAX : value);
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
