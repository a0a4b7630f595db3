// The functions of OpenGL and GLU behind a program's own of the same names, and its context.
#pragma once

/// @return null if the libraries don't have it
void* openGLFunction(const char* name);

/// Leaves the thread without a context.
void releaseContext();
