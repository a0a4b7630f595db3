#include "vornik/core/matrices.h"

#include <cmath>
#include <utility>

// Element i, j of the strided grid that lies in a block of 64 floats.
static float& strided(float (*m)[4][4], int i, int j)
{
    return (&(*m)[0][0])[i * 16 + j * 4];
}

void vrkInitializeMatrix(float (*m)[4][4])
{
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            strided(m, i, j) = i == j ? 1.0f : 0.0f;
}

void vrkMatrixColumnToRow(float* m)
{
    for (int row = 0; row < 4; ++row)
        for (int column = row + 1; column < 4; ++column)
            std::swap(m[row * 4 + column], m[column * 4 + row]);
}

void vrkMatrixRowToColumn(float* m)
{
    vrkMatrixColumnToRow(m);
}

void vrkMatrixColumnToRow(float (*m)[4][4])
{
    for (int i = 0; i < 4; ++i)
        for (int j = i + 1; j < 4; ++j)
            std::swap(strided(m, i, j), strided(m, j, i));
}

void vrkMatrixRowToColumn(float (*m)[4][4])
{
    vrkMatrixColumnToRow(m);
}

bool vrkInvertMatrix(float (&outMatrix)[4][4], float (&inMatrix)[4][4])
{
    const float* in = &inMatrix[0][0];
    float* out = &outMatrix[0][0];

    const float tolerance = 0.0010000000474974513f;
    if (std::fabs(in[15] - 1.0f) > tolerance || std::fabs(in[3]) > tolerance ||
        std::fabs(in[7]) > tolerance || std::fabs(in[11]) > tolerance)
        return false;

    const float a = in[0], b = in[1], c = in[2];
    const float d = in[4], e = in[5], f = in[6];
    const float g = in[8], h = in[9], i = in[10];
    const float det = (e * i - f * h) * a - (i * d - f * g) * b + (h * d - e * g) * c;
    const float k = 1.0f / det;

    out[0] = (e * i - f * h) * k;
    out[1] = -(b * i - c * h) * k;
    out[2] = (b * f - c * e) * k;
    out[4] = -(i * d - f * g) * k;
    out[5] = (i * a - c * g) * k;
    out[6] = -(f * a - c * d) * k;
    out[8] = (h * d - e * g) * k;
    out[9] = -(a * h - b * g) * k;
    out[10] = (e * a - b * d) * k;
    out[3] = out[7] = out[11] = 0.0f;
    out[15] = 1.0f;
    for (int column = 0; column < 3; ++column)
        out[12 + column] = -(in[12] * out[column] + in[13] * out[4 + column] + in[14] * out[8 + column]);
    return true;
}

void Quaternion2Mat(float** rows, const Vertex4D* q)
{
    const float x = q->x, y = q->y, z = q->z, w = q->w;
    const float m[4][4] = {
        {1.0f - 2.0f * (y * y + z * z), 2.0f * (x * y - z * w), 2.0f * (y * w + x * z), 0.0f},
        {2.0f * (z * w + x * y), 1.0f - 2.0f * (x * x + z * z), 2.0f * (y * z - x * w), 0.0f},
        {2.0f * (x * z - y * w), 2.0f * (x * w + y * z), 1.0f - 2.0f * (x * x + y * y), 0.0f},
        {0.0f, 0.0f, 0.0f, 1.0f},
    };
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            rows[row][column] = m[row][column];
}

void Mat2Quaternion(float m[][4], Vertex4D* q)
{
    const float t = std::sqrt(m[2][2] + m[1][1] + m[0][0] + 1.0f);
    q->w = vrkUnRad(static_cast<float>(2.0 * std::acos(t * 0.5)));
    // The sine takes the degrees as they are; hosts know the axis in this scale.
    const double s = std::sin(q->w * 0.5);
    const float u = 2.0f * t;
    q->x = static_cast<float>(((m[1][2] - m[2][1]) / u) / s);
    q->y = static_cast<float>(((m[2][0] - m[0][2]) / u) / s);
    q->z = static_cast<float>(((m[0][1] - m[1][0]) / u) / s);
}
