// Names of objects: malloc blocks that an object and its copies hold together.
#pragma once

/// Counts one more holder of a name. @param name  may be null
/// @return the name; null, and nobody more holds it, if memory doesn't suffice
char* shareName(char* name);

/// Lets go of a name and clears the variable; the last holder frees it. @param name  address of the
/// variable
void releaseName(char** name);
