// The engine's string.

#include <fuzzer/FuzzedDataProvider.h>

#include "fuzz/harness.h"
#include "vornik/core/string.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    startSilentEngine();
    FuzzedDataProvider input(data, size);
    const int from = input.ConsumeIntegral<int>(), to = input.ConsumeIntegral<int>();
    const char c = input.ConsumeIntegral<char>();
    String sized(input.ConsumeIntegral<int>());
    String a(input.ConsumeRandomLengthString(2048).c_str());
    const String b(input.ConsumeRemainingBytesAsString().c_str());
    if (from % 5 == 0)
        a.size = to; // the field is the host's to write
    for (const String* text : {static_cast<const String*>(&a), &b, static_cast<const String*>(&sized)})
    {
        text->length();
        text->charAt(from);
        text->indexOf(c, from);
        text->indexOf(c);
        text->indexOfNumber(from);
        text->indexOfNumber();
        text->indexOfNotNumber(from);
        text->indexOfNotNumber();
        text->compareTo(b);
        text->compareTo("text");
        text->trim().length();
        text->subString(from, to).findNumber();
        text->findNumber();
        (*text + b + c).length();
    }
    sized.clear();
    return 0;
}
