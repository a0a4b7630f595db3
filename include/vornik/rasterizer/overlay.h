#ifndef VORNIK_RASTERIZER_OVERLAY_H
#define VORNIK_RASTERIZER_OVERLAY_H

// Lines, boxes, images and a coloured grid in window coordinates, over the finished frame.
//
// Unless said otherwise the origin is the top left corner of vrkViewport, x runs right and y down, in pixels.
// Each call draws at once and costs a change of both matrices and of five switches: it is meant for a few
// elements a frame. What it leaves: the model-view matrix is the identity, so that the host sets its camera
// again before it draws another object; switches are as before the call. Null points and colours draw
// nothing.

#include "vornik/core/vectors.h"
#include "vornik/export.h"

class Material;

/// Leaves a.y and b.y mirrored: height - y, counted from the bottom. A second call with the same records
/// draws at the mirrored place. The line has no length: both its ends are a. OpenGL only. Leaves the
/// projection of vrkViewport.
VRK_API void vrkDrawLine(Vertex2D* a, Vertex2D* b, Color* c);
/// The same at the depth of a.z, from 0 on the far plane to 1.
VRK_API void vrkDrawLine(Vertex3D* a, Vertex3D* b, Color* c);

/// A line in the coordinates of the eye, under the projection and the depth test as they are. It too has no
/// length, and the points stay as they are. OpenGL only.
VRK_API void vrkDraw3DLine(Vertex3D* a, Vertex3D* b, Color* c);

/// Four lines around a box, of vrkDrawLine's kind. The points stay as they are. OpenGL only.
VRK_API void vrkDrawBox(Vertex2D* a, Vertex2D* b, Color* c);

/// A box from corner a to corner b, blended by the host's blend function. Mirrors a.y and b.y as vrkDrawLine
/// does. OpenGL only. Leaves the projection of vrkViewport.
VRK_API void vrkDrawFilledBox(Vertex2D* a, Vertex2D* b, Color* c);
/// The same with a colour for each corner: (a.x, a.y), (b.x, a.y), (b.x, b.y), (a.x, b.y). Both rasterizers;
/// Direct3D leaves the points as they are and forces the colours into 0 to 1.
VRK_API void vrkDrawFilledBox(Vertex2D* a, Vertex2D* b, Color* c1, Color* c2, Color* c3, Color* c4);

/// The current frame of the material's first texture, blended by the host's blend function. Drawn untextured
/// where VRK_TEXTURE_2D is off. The projection stays.
/// @param position  top left corner; z isn't read
/// @param material  null, or one without first texture, changes nothing at all
/// @param width, height  in pixels
/// @param rotation  degrees about the image's middle, counter-clockwise; Direct3D doesn't turn it
VRK_API void vrkDrawImage(Vertex3D* position, Material* material, Color* c, float width, float height,
                          bool unused, float rotation);

/// The same unturned, about the position as its middle, with y counted from the bottom. OpenGL only.
VRK_API void vrkDrawImageWithoutYConversion(Vertex3D* position, Material* material, Color* c, float width,
                                            float height, bool unused);

/// 79 by 59 quads with a colour and a texture coordinate at each node, from the top left corner of a box of
/// width by height pixels at the bottom left of the window. Switches depth test, fog and culling on and then
/// back to what they were. The projection stays. OpenGL only.
/// @param colors  [60][80]
/// @param coords  [60][80]
/// @param material  null, or one without first texture, changes nothing at all
VRK_API void vrkDrawGrid(Color* colors, Vertex2D* coords, float width, float height, Material* material);

#endif
