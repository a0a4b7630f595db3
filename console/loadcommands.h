// LOAD3DS, RELOAD3DS and CLEAR3DS.
#pragma once

#include "console/commandline.h"

class Console;

// Each returns what Console::parse returns.

/// Keeps the line for RELOAD3DS, also where there is no scene.
int load3dsCommand(Console* console, const CommandLine& line);
int reload3dsCommand(Console* console, const CommandLine& line);
int clear3dsCommand(Console* console, const CommandLine& line);
