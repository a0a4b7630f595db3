// The nine signatures of a console's functions, in the order in which they are searched and listed.
#pragma once

#include "vornik/console/console.h"

/// Calls visit(count, functions, names, result, argument) for each signature, the last two being what lists
/// call its types.
template <class Visit>
void forEachSignature(Console* console, Visit visit)
{
    const int32_t* counts = console->funcCounts;
    visit(counts[0], console->voidFloatFuncs, console->voidFloatNames, "Void", "Float");
    visit(counts[1], console->voidIntFuncs, console->voidIntNames, "Void", "Int");
    visit(counts[2], console->voidFuncs, console->voidNames, "Void", "Void");
    visit(counts[3], console->intFloatFuncs, console->intFloatNames, "Int", "Float");
    visit(counts[4], console->intIntFuncs, console->intIntNames, "Int", "Int");
    visit(counts[5], console->intFuncs, console->intNames, "Int", "Void");
    visit(counts[6], console->floatFloatFuncs, console->floatFloatNames, "Float", "Float");
    visit(counts[7], console->floatIntFuncs, console->floatIntNames, "Float", "Int");
    visit(counts[8], console->floatFuncs, console->floatNames, "Float", "Void");
}
