// Text as the console reads and writes it: the same in every locale, and defined for every input.
#pragma once

#include <cstdint>
#include <string>

/// In upper case, character by character.
std::string upperCase(const std::string& text);

/// Cut towards zero; too large is the nearest int, no number 0.
int truncatedInt(float value);

/// As %f prints it.
std::string decimal(float value);
/// As %x prints the low 32 bits.
std::string hexadecimal(uint64_t value);
/// The address, as above.
std::string hexadecimal(const void* pointer);
