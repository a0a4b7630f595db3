#ifndef VORNIK_RASTERIZER_TRANSPARENT_H
#define VORNIK_RASTERIZER_TRANSPARENT_H

// The stack of transparent faces, which is sorted and drawn behind everything else of a frame.

#include "vornik/core/vectors.h"
#include "vornik/export.h"

class Camera;
class Material;

/// One face that waits. Nothing is owned, so what it points at stays as it is until the stack is drawn.
struct TransparentPlane
{
    /// Arrays of the mesh that the face belongs to.
    ///@{
    Color* colors;
    Vertex2D* coords;
    Vertex3D* vertices;
    Vertex3D* normals;
    ///@}
    Facelist* face;     ///< its corners
    Vertex3D* origin;   ///< what the face's own coordinates are relative to; for sorting only
    float distance;     ///< squared, from the camera; set when the stack is drawn
    Material* material; ///< of the face
    float matrix[16];   ///< model-view matrix when the face was pushed
};

/// Makes an empty stack. The host calls it once after start-up.
/// @param capacity  transparent faces of a frame. A frame that has more makes room for them, once
VRK_API void vrkInitTransparentPlaneStack(int capacity);
/// Releases the stack and what waits on it.
VRK_API void vrkUnInitTransparentPlaneStack();

/// Pushes the faces first to last under the current model-view matrix. Without a stack nothing is kept.
VRK_API void vrkAddTransparentFace(Color* colors, Vertex2D* coords, Vertex3D* vertices, Vertex3D* normals,
                                   Facelist* faces, int first, int last, Material* material,
                                   Vertex3D* origin);

/// Draws the faces from far to near, by the squared distance of centroid plus origin from the camera's eye,
/// and empties the stack. Faces of one distance are drawn in the order of their pushes. Leaves blending and
/// culling on and the model-view matrix of the last face. On other rasterizers than OpenGL nothing is drawn.
/// @param camera  null sorts from the world's origin
VRK_API void vrkDrawTransparentPlanes(Camera* camera);

#endif
