#ifndef VORNIK_RASTERIZER_FOG_H
#define VORNIK_RASTERIZER_FOG_H

#include "vornik/core/vectors.h"
#include "vornik/export.h"

/// Linear fog between two distances. Switches fog on. @return 0
VRK_API int vrkSetFog(Color c, float start, float end);

/// Fog by density. Switches fog on. On OpenGL the fog mode stays as it is and the fog start becomes 2049: a
/// host that wants exponential fog there sets the mode itself. @return 0
VRK_API int vrkSetFog(Color c, float density);
/// The density alone, with the same effect on the fog start.
VRK_API void vrkSetFogDensity(float density);
/// Of linear fog, world units from the eye.
VRK_API void vrkSetFogStart(float value);
/// Of linear fog. On Direct3D this sets the start.
VRK_API void vrkSetFogEnd(float value);

#endif
