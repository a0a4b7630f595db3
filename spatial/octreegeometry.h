// A triangle that is asked about many boxes.
#pragma once

#include "vornik/core/vectors.h"

/// What segmentIntersectsBox answers for the eight children of a node, which share their middles and widths.
class AskedChildren
{
public:
    /// @param low, high  bounds of child 0 and of child 7
    AskedChildren(const Vertex3D& start, const Vertex3D& end, const Vertex3D (&low)[2],
                  const Vertex3D (&high)[2]);
    bool isPassed(int child) const;

private:
    // Ends of the segment in the unit cubes of the halves along x, y and z. All are scaled by the width along
    // x.
    struct Ends
    {
        float from, to;
        bool isBeside; ///< both lie beyond one side of the cube
    };
    static Ends scaledEnds(float from, float to, float middle, float scale);

    bool hasWidth[2];
    Ends x[2], y[2][2], z[2][2]; ///< [half along x][half along y or z]
};

struct AskedTriangle
{
    const Vertex3D* corners; ///< [3]
    Vertex3D normal;
    int along; ///< axis of the normal's largest component
    int u, v;  ///< the axes of projection along it

    explicit AskedTriangle(const Vertex3D* triangle);
    /// What triangleIntersectsBox answers.
    bool intersects(const Vertex3D& min, const Vertex3D& max) const;
    /// From which width on a cube is surely apart from the triangle if that lies a 64th of the width beside
    /// it along the normal. Infinite where the normal is unsure.
    float leastWidth() const;
};
