#ifndef VORNIK_RASTERIZER_STATE_H
#define VORNIK_RASTERIZER_STATE_H

// Matrices, view, projection and drawing state. All constants are VRKConstant; one outside the table is
// ignored.

#include "vornik/core/vectors.h"
#include "vornik/export.h"

class Camera;

VRK_API void vrkInitMatrix(); ///< identity
/// Keeps the current matrix and brings it back.
///@{
VRK_API void vrkPushMatrix();
VRK_API void vrkPopMatrix();
///@}
/// Multiplies the current matrix.
///@{
VRK_API void vrkRotate(float degrees, float x, float y, float z);
VRK_API void vrkTranslate(float x, float y, float z);
VRK_API void vrkScale(float x, float y, float z);
///@}

/// Multiplies the current matrix. @param m  [64 floats]: OpenGL gathers every fourth float of the block;
/// Direct3D takes the first sixteen.
VRK_API void vrkMultMatrix(float (*m)[4][4]);

/// Reads a matrix back. @param m  [16], out; untouched where the rasterizer has none to give
///@{
VRK_API void vrkGetModelViewMatrix(float* m);
VRK_API void vrkGetModelViewMatrix(double* m);
VRK_API void vrkGetProjectionMatrix(float* m);
VRK_API void vrkGetProjectionMatrix(double* m);
///@}
/// @param v  [4], out: x, y, width, height in pixels
VRK_API void vrkGetViewportMatrix(int* v);

/// Which matrix the calls above change: VRK_MODELVIEW, VRK_PROJECTION or VRK_TEXTURE.
VRK_API void vrkSetMatrixType(int constant);
/// Keeps a part of the state and brings it back: VRK_ENABLE_BIT is that of the switches. OpenGL only.
///@{
VRK_API void vrkPushAttrib(int constant);
VRK_API void vrkPopAttrib();
///@}

/// Multiplies the current matrix by the camera's view; z is up. The roll acts on OpenGL only.
/// @return 0, or 24 for a null camera, logged
VRK_API int vrkLookWithCamera(Camera* camera);
/// Multiplies the current matrix by the view from one point to another.
VRK_API void vrkLookAt(float eyeX, float eyeY, float eyeZ, float targetX, float targetY, float targetZ,
                       float upX, float upY, float upZ);

/// Stores the field of view and rebuilds the projection. Leaves the matrix type at VRK_MODELVIEW.
VRK_API void vrkSetFOV(float degrees);
/// The same with the camera's own.
VRK_API void vrkSetFOV(Camera* camera);
/// Of vrkViewport, degrees.
VRK_API float vrkGetFOV();
/// The live record, which the host may read.
VRK_API Viewport* vrkGetViewport();
/// Copies all six fields and rebuilds the projection; the pixel rectangle of the surface doesn't follow.
VRK_API void vrkSetViewport(const Viewport* viewport);

/// OpenGL obeys VRK_TEXTURE_2D and ignores VRK_TEXTURE, Direct3D the other way round: to switch texturing off
/// on both, pass both. @return 0
///@{
VRK_API int vrkEnable(int constant);
VRK_API int vrkDisable(int constant);
///@}
/// Is it on? False for a constant outside the table.
VRK_API bool vrkIsEnabled(int constant);
/// VRK_FLAT or VRK_SMOOTH. @return 0
VRK_API int vrkShadeModel(int constant);
/// Factors from VRK_SRC_ALPHA to VRK_ZERO.
VRK_API void vrkBlendFunc(int source, int destination);
/// VRK_EQUAL, VRK_LEQUAL, VRK_GEQUAL or VRK_GREATER.
VRK_API void vrkDepthFunc(int constant);
/// VRK_TRUE or VRK_FALSE: is depth written?
VRK_API void vrkDepthMask(int constant);
/// A comparison as of vrkDepthFunc. @param reference  0 to 1
VRK_API void vrkAlphaFunc(int constant, float reference);
/// @param c  Direct3D forces the record itself into 0 to 1
VRK_API void vrkSetClearColor(Color* c);

#endif
