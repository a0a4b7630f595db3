#pragma once

/// Asks a yes-or-no question and waits. With nobody to ask, writes text to standard error and says yes.
bool vrkPlatformAsk(const char* caption, const char* text);
