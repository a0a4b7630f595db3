// Just enough JSON to print figures for programs.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// A quoted string. Bytes that are no UTF-8 are taken as Latin-1, in which old editors wrote names.
std::string jsonString(const std::string& text);

/// An object built field by field, in order.
class JsonObject
{
public:
    JsonObject& add(const std::string& name, const std::string& text)
    {
        return addRaw(name, jsonString(text));
    }
    JsonObject& add(const std::string& name, const char* text) { return addRaw(name, jsonString(text)); }
    JsonObject& add(const std::string& name, bool value) { return addRaw(name, value ? "true" : "false"); }
    JsonObject& add(const std::string& name, int value) { return addRaw(name, std::to_string(value)); }
    JsonObject& add(const std::string& name, size_t value) { return addRaw(name, std::to_string(value)); }
    JsonObject& add(const std::string& name, float value);
    JsonObject& addRaw(const std::string& name, const std::string& json);
    std::string text() const { return "{" + fields + "}"; }

private:
    std::string fields;
};

std::string jsonArray(const std::vector<std::string>& elements);
std::string jsonNumbers(const std::vector<float>& values);
