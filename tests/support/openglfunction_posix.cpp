// The program's own functions hide the library's, and a linker that keeps only needed libraries may have
// dropped it, so it is opened by name.

#include "tests/support/openglfunction.h"

#include <cstring>
#include <dlfcn.h>

#include "platform/gldevice.h"

void* openGLFunction(const char* name)
{
    static void* const openGL = dlopen("libOpenGL.so.0", RTLD_NOW | RTLD_GLOBAL);
    static void* const glu = dlopen("libGLU.so.1", RTLD_NOW | RTLD_GLOBAL);
    return dlsym(std::strncmp(name, "glu", 3) == 0 ? glu : openGL, name);
}

void releaseContext()
{
    releaseOffscreenContext();
}
