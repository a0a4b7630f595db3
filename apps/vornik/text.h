// Text that comes from files, made fit to print.
#pragma once

#include <string>

/// As UTF-8 without control characters. Bytes that are no UTF-8 are taken as Latin-1, in which old editors
/// wrote names; control characters become question marks.
std::string printable(const std::string& text);

/// Number of characters of a printable text.
size_t columns(const std::string& text);

/// The text, filled up with blanks to a number of characters.
std::string padded(const std::string& text, size_t width);

/// Length in bytes of the UTF-8 sequence at an index, 0 if there is none.
size_t utf8Length(const std::string& text, size_t at);

/// Prints "vornik: line" to standard error. @return 1, the exit status for a file that can't be served
int fail(const std::string& line);
