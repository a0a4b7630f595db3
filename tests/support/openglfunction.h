// The functions of OpenGL and GLU behind a program's own of the same names.
#pragma once

/// @return null if the libraries don't have it
void* openGLFunction(const char* name);
