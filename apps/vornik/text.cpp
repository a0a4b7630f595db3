#include "apps/vornik/text.h"

#include <cstdio>

static unsigned char byteAt(const std::string& text, size_t at)
{
    return static_cast<unsigned char>(text[at]);
}

static size_t lengthFromLead(unsigned char lead)
{
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead < 0xE0)
        return 2;
    return lead >= 0xE0 && lead < 0xF0 ? 3 : 0;
}

size_t utf8Length(const std::string& text, size_t at)
{
    const unsigned char lead = byteAt(text, at);
    const size_t length = lengthFromLead(lead);
    if (length == 0 || at + length > text.size())
        return 0;
    for (size_t i = 1; i < length; ++i)
        if ((byteAt(text, at + i) & 0xC0) != 0x80)
            return 0;
    // Overlong forms and halves of surrogate pairs are no characters.
    if (lead == 0xE0 && byteAt(text, at + 1) < 0xA0)
        return 0;
    if (lead == 0xED && byteAt(text, at + 1) >= 0xA0)
        return 0;
    return length;
}

std::string printable(const std::string& text)
{
    std::string shown;
    for (size_t i = 0; i < text.size();)
    {
        const unsigned char c = byteAt(text, i);
        const size_t length = utf8Length(text, i);
        if (length > 1)
            shown += text.substr(i, length);
        else if (c < 0x20 || (c >= 0x7F && c < 0xA0))
            shown += '?';
        else if (length == 1)
            shown += text[i];
        else
        {
            shown += static_cast<char>(0xC0 | c >> 6);
            shown += static_cast<char>(0x80 | (c & 0x3F));
        }
        i += length == 0 ? 1 : length;
    }
    return shown;
}

size_t columns(const std::string& text)
{
    size_t count = 0;
    for (size_t i = 0; i < text.size(); ++i)
        count += (byteAt(text, i) & 0xC0) != 0x80;
    return count;
}

std::string padded(const std::string& text, size_t width)
{
    const size_t used = columns(text);
    return used < width ? text + std::string(width - used, ' ') : text;
}

int fail(const std::string& line)
{
    std::fprintf(stderr, "vornik: %s\n", printable(line).c_str());
    return 1;
}
