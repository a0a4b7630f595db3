#include "core/number.h"

#include <charconv>
#include <climits>
#include <cstdint>
#include <limits>

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

// Which way a number lies outside a double: by its exponent, or without one by what stands before the point.
static double outOfRange(const std::string& digits)
{
    const size_t exponent = digits.find_last_of("eEpP");
    const bool small = exponent == std::string::npos ? digits.find_first_not_of('0') == digits.find('.')
                                                     : digits.compare(exponent + 1, 1, "-") == 0;
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
