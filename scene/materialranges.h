// The record of a mesh's faces by material: malloc blocks, since hosts may replace them.
#pragma once

#include "vornik/scene/mesh.h"

/// A record with room for count ranges, which are unset; null if there is no memory.
MaterialFaceList* makeMaterialRanges(int count);
/// A copy with ranges of its own; null for null.
MaterialFaceList* copyMaterialRanges(const MaterialFaceList* from);
/// Frees the record and its ranges and clears the mesh's pointer.
void releaseMaterialRanges(Mesh* mesh);
