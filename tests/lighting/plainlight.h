// The lighting passes as they are defined, loop by loop, for comparison with the engine's.
#pragma once

#include <vector>

#include "vornik/core/vectors.h"

class Light;
class OGroup;

/// Tests every face of the groups. The vertex and the corners of the face at hand are moved in place while
/// they are looked at, as the definition has it, and get their bits back.
bool plainCheckRay(const std::vector<OGroup*>& groups, Light* light, Vertex3D* vertex, Vertex3D* offset);

void plainGroupLight(OGroup* group, Light* light, int flags);
void plainSceneLight(const std::vector<OGroup*>& groups, Light* light, int flags);
