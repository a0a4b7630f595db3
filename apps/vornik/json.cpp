#include "apps/vornik/json.h"

#include <cmath>
#include <cstdio>

#include "apps/vornik/text.h"

std::string jsonString(const std::string& text)
{
    std::string quoted = "\"";
    for (size_t i = 0; i < text.size();)
    {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        const size_t length = utf8Length(text, i);
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
    elements.reserve(values.size());
    for (const float value : values)
        elements.push_back(number(value));
    return jsonArray(elements);
}
