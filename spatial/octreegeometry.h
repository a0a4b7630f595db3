// A triangle that is asked about many boxes.
#pragma once

#include "vornik/core/vectors.h"

struct AskedTriangle
{
    const Vertex3D* corners; ///< [3]
    Vertex3D normal;
    int u, v; ///< the axes of projection along the normal

    explicit AskedTriangle(const Vertex3D* triangle);
    /// What triangleIntersectsBox answers.
    bool intersects(const Vertex3D& min, const Vertex3D& max) const;
};
