#ifndef VORNIK_CORE_MATRICES_H
#define VORNIK_CORE_MATRICES_H

// Free functions on matrices: blocks of sixteen floats in OpenGL's memory layout, translation in elements 12
// to 14.
//
// The forms that take float (*m)[4][4] work on a block of 64 floats and touch every fourth one: element i, j
// is the first float of row j of the i-th matrix, flat index i * 16 + j * 4.

#include "vornik/core/vectors.h"

/// Sets the strided 4 by 4 grid to the identity. @param m  [64 floats]
VRK_API void vrkInitializeMatrix(float (*m)[4][4]);

/// Transposes one matrix in place. @param m  [16]
VRK_API void vrkMatrixColumnToRow(float* m);
/// The same as vrkMatrixColumnToRow; two names for the caller's reading.
VRK_API void vrkMatrixRowToColumn(float* m);
/// Transposes the strided grid in place. @param m  [64 floats]
VRK_API void vrkMatrixColumnToRow(float (*m)[4][4]);
/// The same.
VRK_API void vrkMatrixRowToColumn(float (*m)[4][4]);

/// Inverse of an affine matrix. out and in must be different matrices.
/// @return false, with out untouched, if the last column is further than 0.001 from 0, 0, 0, 1. A
///         determinant of zero isn't tested and gives infinities.
VRK_API bool vrkInvertMatrix(float (&out)[4][4], float (&in)[4][4]);

/// Rotation matrix of a quaternion, which isn't normalised. @param rows  [4], each [4], out
VRK_API void Quaternion2Mat(float** rows, const Vertex4D* q);

/// Angle in degrees in w and a scaled axis in x, y, z. Not the inverse of Quaternion2Mat: the half angle's
/// sine is taken of the degrees. The identity gives w = 0 and an axis that is no number.
VRK_API void Mat2Quaternion(float m[][4], Vertex4D* q);

#endif
