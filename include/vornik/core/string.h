#ifndef VORNIK_CORE_STRING_H
#define VORNIK_CORE_STRING_H

#include <stdint.h>

#include "vornik/export.h"

/// A text of at most 1024 characters, kept whole in the record and copied by value.
/// The text ends at the first zero byte or at size, whichever comes first. Characters are signed.
/// Longer text is cut; size stays within 0 to 1024.
class VRK_API String
{
public:
    char data[1024]; ///< only the first size bytes are defined
    int32_t size;    ///< bytes of data that count

    String();                 ///< size 256, all cleared
    String(int n);            ///< size n, all cleared
    String(const char* text); ///< size is the length of text

    /// Characters of the text.
    int length() const;
    /// Makes the text empty.
    void clear();
    int charAt(int i) const; ///< 0 outside the text

    /// First index from `from` on that holds c, or -1; `from` is limited to the text.
    int indexOf(char c, int from) const;
    /// The same from the start.
    int indexOf(char c) const;
    int indexOfNumber(int from) const; ///< first digit
    /// The same from the start.
    int indexOfNumber() const;
    int indexOfNotNumber(int from) const; ///< first character that is no digit
    /// The same from the start.
    int indexOfNotNumber() const;

    /// -1 or 1 at the first difference, the difference of lengths where one is the start of the other, 0 if
    /// equal. Two empty texts give -1.
    int compareTo(const String& other) const;
    /// The same with a plain text.
    int compareTo(const char* text) const;

    /// Without leading blanks. Trailing blanks and other white space stay; a text of blanks only comes back
    /// whole.
    String trim() const;
    /// Characters from `from` up to but not including `to`; empty when the range is negative or reversed.
    String subString(int from, int to) const;
    /// The first number, 0 if there is none. A fraction counts only if something follows it; a minus right in
    /// front counts; an exponent doesn't.
    float findNumber() const;

    /// Both texts, cut to what fits.
    String operator+(const String& other) const;
    /// One character more, if it fits.
    String operator+(char c) const;
    /// The address of data.
    operator char*();
    char* toChar(); ///< the address of data
};

#endif
