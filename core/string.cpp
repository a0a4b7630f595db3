#include "vornik/core/string.h"

#include <cstring>
#include <string_view>

#include "core/number.h"

static const int capacity = static_cast<int>(sizeof(String::data));

static int limited(int value, int low, int high)
{
    return value < low ? low : value > high ? high : value;
}

static bool isDigit(int c)
{
    return c >= '0' && c <= '9';
}

String::String() : String(256) {}

String::String(int n) : size(limited(n, 0, capacity))
{
    clear();
}

String::String(const char* text) : size(static_cast<int32_t>(strnlen(text, capacity)))
{
    std::memcpy(data, text, static_cast<size_t>(size));
    if (size < capacity)
        data[size] = 0;
}

int String::length() const
{
    const int end = limited(size, 0, capacity);
    return static_cast<int>(strnlen(data, static_cast<size_t>(end)));
}

void String::clear()
{
    std::memset(data, 0, static_cast<size_t>(limited(size, 0, capacity)));
}

int String::charAt(int i) const
{
    return i < 0 || i >= length() ? 0 : static_cast<signed char>(data[i]);
}

// First index from `from` on whose character passes the test, or -1.
template <typename Test>
static int firstIndex(const String& text, int from, Test test)
{
    const int end = text.length();
    const int start = from > end ? end : from;
    for (int i = start < 0 ? 0 : start; i < end; ++i)
        if (test(text.data[i]))
            return i;
    return -1;
}

int String::indexOf(char c, int from) const
{
    return firstIndex(*this, from, [c](char at) { return at == c; });
}

int String::indexOf(char c) const
{
    return indexOf(c, 0);
}

int String::indexOfNumber(int from) const
{
    return firstIndex(*this, from, [](char at) { return isDigit(at); });
}

int String::indexOfNumber() const
{
    return indexOfNumber(0);
}

int String::indexOfNotNumber(int from) const
{
    return firstIndex(*this, from, [](char at) { return !isDigit(at); });
}

int String::indexOfNotNumber() const
{
    return indexOfNotNumber(0);
}

int String::compareTo(const String& other) const
{
    const int own = length();
    const int others = other.length();
    const int shared = own < others ? own : others;
    for (int i = 0; i < shared; ++i)
        if (data[i] != other.data[i])
            return static_cast<signed char>(data[i]) > static_cast<signed char>(other.data[i]) ? 1 : -1;
    // Two empty texts count as different: callers ask with an empty name for "none".
    if (own == 0 && others == 0)
        return -1;
    return own - others;
}

int String::compareTo(const char* text) const
{
    return compareTo(String(text));
}

String String::trim() const
{
    const int end = length();
    const int start = firstIndex(*this, 0, [](char at) { return at != ' '; });
    return start < 0 ? *this : subString(start, end);
}

String String::subString(int from, int to) const
{
    const int end = length();
    if (to > end)
        to = end;
    if (from > end)
        from = end;
    if (from < 0 || to < from)
        return String(1);
    String part(end);
    std::memcpy(part.data, data + from, static_cast<size_t>(to - from));
    return part;
}

float String::findNumber() const
{
    const int start = indexOfNumber();
    if (start < 0)
        return 0.0f;
    int end = indexOfNotNumber(start);
    if (end < 0)
        end = length();
    if (charAt(end) == '.')
    {
        // Digits that run to the end of the text don't count as a fraction.
        const int fractionEnd = indexOfNotNumber(end + 1);
        if (fractionEnd >= 0)
            end = fractionEnd;
    }

    const std::string_view digits(data + start, static_cast<size_t>(end - start));
    const float value = static_cast<float>(numberFrom(digits));
    return charAt(start - 1) == '-' ? -value : value;
}

String String::operator+(const String& other) const
{
    const int own = length();
    const int others = limited(other.length(), 0, capacity - own);
    String sum(own + others + 1);
    std::memcpy(sum.data, data, static_cast<size_t>(own));
    std::memcpy(sum.data + own, other.data, static_cast<size_t>(others));
    return sum;
}

String String::operator+(char c) const
{
    const int own = length();
    String sum(own + 1);
    std::memcpy(sum.data, data, static_cast<size_t>(own));
    if (own < capacity)
        sum.data[own] = c;
    if (own + 1 < capacity)
        sum.data[own + 1] = 0;
    return sum;
}

String::operator char*()
{
    return data;
}

char* String::toChar()
{
    return data;
}
