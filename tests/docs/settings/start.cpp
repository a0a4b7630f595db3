// Where a host starts or loads.
#include <stdio.h>

#include <string>
#include <vector>

#include "vornik/vornik.h"

int start(Scene& scene, VRKWindow window, Console* console, int flags, const char* file, const char* folder,
          bool useTnL, int secondaryDevice, bool windowed)
{
    {
        // block
    }
    return 0;
}
