#ifndef VORNIK_RASTERIZER_FACES_H
#define VORNIK_RASTERIZER_FACES_H

// Handing a range of a mesh's faces to OpenGL, in the four ways that mesh rendering needs. Direct3D draws
// through its own mesh object: there all of these do nothing and return 0.
//
// Arrays are owned by the mesh; colors, coords, vertices and normals are indexed by vertex, faces by face.
// first and last are face numbers, both inclusive unless said otherwise.

#include "vornik/core/vectors.h"
#include "vornik/export.h"

/// One draw call through vertex arrays. The alpha of the colours counts.
VRK_API void vrkRenderList(Color* colors, Vertex2D* coords, Vertex3D* vertices, Vertex3D* normals,
                           Facelist* faces, int first, int last);
/// Corner by corner, with full alpha.
VRK_API void vrkRenderBasic(Color* colors, Vertex2D* coords, Vertex3D* vertices, Vertex3D* normals,
                            Facelist* faces, int first, int last);
/// Edges as lines, with the alpha of colors[0]. The last face of the range is left out.
/// @param flags  [face]: 1 draws the edge ca, 2 ab, 4 bc
VRK_API void vrkRenderWire(Color* colors, Vertex2D* coords, Vertex3D* vertices, Vertex3D* normals,
                           Facelist* faces, const char* flags, int first, int last);
/// Corner by corner with the given alpha and texture coordinates made of the normal: (n.x + 0.5, n.y + 0.5).
VRK_API void vrkRenderReflection(Color* colors, Vertex3D* vertices, Vertex3D* normals, Facelist* faces,
                                 int first, int last, float alpha);

/// Names of display lists that follow each other. @return the first; 0 if there are none
VRK_API int vrkGenLists(int count);
/// Gives back names that follow each other. @param list  the first
VRK_API void vrkDeleteLists(int list, int count);
/// 1 for a list that was recorded.
VRK_API int vrkIsList(int list);
/// @param constant  VRK_COMPILE or VRK_COMPILE_AND_EXECUTE
VRK_API void vrkNewList(int list, int constant);
/// Ends the recording.
VRK_API void vrkEndList();
/// Draws what was recorded.
VRK_API void vrkCallList(int list);

/// Begins a primitive. @param constant  index into vrkConvertCapTableOGL, which has no primitive modes of its
/// own
VRK_API void vrkBegin(int constant);
/// Ends the primitive.
VRK_API void vrkEnd();
/// For the corners that follow; vrkVertex3f makes one.
///@{
VRK_API void vrkColor4f(float r, float g, float b, float a);
VRK_API void vrkNormal3f(float x, float y, float z);
VRK_API void vrkVertex3f(float x, float y, float z);
VRK_API void vrkTexCoord2f(float u, float v);
///@}

#endif
