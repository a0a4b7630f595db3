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
static std::string_view digitsOf(std::string_view text, bool* negative)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    *negative = text.starts_with('-');
    if (*negative || text.starts_with('+'))
        text.remove_prefix(1);
    return text;
}

// Is this a number to the base of 16? Without a digit behind it the prefix is a 0 and a letter, also where
// words follow that stand for a number.
static bool isHexadecimal(std::string_view digits)
{
    return (digits.starts_with("0x") || digits.starts_with("0X")) &&
           digits.find_first_of("0123456789abcdefABCDEF.", 2) == 2;
}

// Which way a number lies outside a double: by its exponent, or without one by what stands before the point.
static double outOfRange(std::string_view digits)
{
    const size_t exponent = digits.find_last_of("eEpP");
    const bool small = exponent == std::string_view::npos ? digits.find_first_not_of('0') == digits.find('.')
                                                          : digits.substr(exponent + 1).starts_with('-');
    return small ? 0.0 : std::numeric_limits<double>::infinity();
}

double numberFrom(std::string_view text)
{
    bool negative;
    std::string_view digits = digitsOf(text, &negative);
    auto format = std::chars_format::general;
    if (isHexadecimal(digits))
    {
        format = std::chars_format::hex;
        digits.remove_prefix(2);
    }
    if (digits.starts_with('-')) // a second sign would be taken as part of the digits
        return 0.0;
    double value = 0.0;
    const char* const begin = digits.data();
    const auto [stop, error] = std::from_chars(begin, begin + digits.size(), value, format);
    if (error == std::errc::invalid_argument)
        return 0.0;
    if (error == std::errc::result_out_of_range)
        value = outOfRange(digits.substr(0, static_cast<size_t>(stop - begin)));
    return negative ? -value : value;
}

int integerFrom(std::string_view text)
{
    bool negative;
    int64_t value = 0;
    for (const char c : digitsOf(text, &negative))
    {
        if (c < '0' || c > '9' || value > INT_MAX)
            break;
        value = value * 10 + (c - '0');
    }
    if (negative)
        value = -value;
    return static_cast<int>(value < INT_MIN ? INT_MIN : value > INT_MAX ? INT_MAX : value);
}
