// A progress bar on standard error, for people: nothing appears where that is no terminal.
#pragma once

/// Switches the bar off for good.
void silenceProgress();

/// Draws the bar. @param fraction  0 to 1; what is no number is ignored
void showProgress(float fraction);

/// Hands every step to a function instead, for hosts with a window. @param show  null: the bar again
void showProgressBy(void (*show)(float));

/// Removes the bar, so that other lines can follow.
void clearProgress();
