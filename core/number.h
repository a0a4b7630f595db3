// Numbers in text, read with a decimal point in every locale, and defined for every input.
#pragma once

#include <string_view>

/// As atof reads it with a decimal point: blanks, a sign, digits with a fraction and an exponent, hexadecimal
/// digits, INF or NAN at the start; 0 for anything else. Too large is infinite, too small 0.
double numberFrom(std::string_view text);
/// As atoi reads it; too large is the nearest int.
int integerFrom(std::string_view text);
