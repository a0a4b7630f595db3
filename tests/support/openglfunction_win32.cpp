#include "tests/support/openglfunction.h"

#include <cstring>
#include <windows.h>

void* openGLFunction(const char* name)
{
    static const HMODULE openGL = LoadLibraryA("opengl32.dll");
    static const HMODULE glu = LoadLibraryA("glu32.dll");
    return reinterpret_cast<void*>(GetProcAddress(std::strncmp(name, "glu", 3) == 0 ? glu : openGL, name));
}

void releaseContext()
{
    wglMakeCurrent(nullptr, nullptr);
}
