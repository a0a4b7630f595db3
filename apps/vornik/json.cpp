#include "apps/vornik/json.h"

#include <cmath>
#include <cstdio>

// Length of the UTF-8 sequence that begins here, 0 if it is none.
static size_t sequenceLength(const std::string& text, size_t at)
{
    const unsigned char lead = static_cast<unsigned char>(text[at]);
    const size_t length = lead < 0x80                   ? 1
                          : lead >= 0xC2 && lead < 0xE0 ? 2
                          : lead >= 0xE0 && lead < 0xF0 ? 3
                                                        : 0;
    if (length == 0 || at + length > text.size())
        return 0;
    for (size_t i = 1; i < length; ++i)
        if ((static_cast<unsigned char>(text[at + i]) & 0xC0) != 0x80)
            return 0;
    if (lead == 0xE0 && static_cast<unsigned char>(text[at + 1]) < 0xA0)
        return 0;
    if (lead == 0xED && static_cast<unsigned char>(text[at + 1]) >= 0xA0)
        return 0;
    return length;
}

std::string jsonString(const std::string& text)
{
    std::string quoted = "\"";
    for (size_t i = 0; i < text.size();)
    {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        const size_t length = sequenceLength(text, i);
        if (c == '"' || c == '\\')
            quoted += std::string("\\") + text[i];
        else if (c < 0x20 || c == 0x7F || length == 0)
        {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", c);
            quoted += escape;
        }
        else
            quoted += text.substr(i, length);
        i += length == 0 ? 1 : length;
    }
    return quoted + "\"";
}

static std::string number(float value)
{
    if (!std::isfinite(value))
        return "null";
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", static_cast<double>(value));
    return text;
}

JsonObject& JsonObject::add(const std::string& name, float value)
{
    return addRaw(name, number(value));
}

JsonObject& JsonObject::addRaw(const std::string& name, const std::string& json)
{
    fields += (fields.empty() ? "" : ", ") + jsonString(name) + ": " + json;
    return *this;
}

std::string jsonArray(const std::vector<std::string>& elements)
{
    std::string joined;
    for (const std::string& element : elements)
        joined += (joined.empty() ? "" : ", ") + element;
    return "[" + joined + "]";
}

std::string jsonNumbers(const std::vector<float>& values)
{
    std::vector<std::string> elements;
    for (const float value : values)
        elements.push_back(number(value));
    return jsonArray(elements);
}
