#include "platform/question.h"

#include <windows.h>

bool vrkPlatformAsk(const char* caption, const char* text)
{
    // Without a window station there is nobody to ask, and the box doesn't come up.
    return MessageBoxA(nullptr, text, caption, MB_YESNO) != IDNO;
}
