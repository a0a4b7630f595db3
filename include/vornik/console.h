#ifndef VORNIK_CONSOLE_H
#define VORNIK_CONSOLE_H

// The text console: its store and its command language.

#include "vornik/console/console.h"

#endif
