#include "rasterizer/d3d/matrixstack.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <new>

static const float identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

D3DMatrixStack::D3DMatrixStack() : matrices(1)
{
    loadIdentity();
}

void D3DMatrixStack::push()
{
    try
    {
        matrices.push_back(Matrix(matrices.back()));
    }
    catch (const std::bad_alloc&)
    {
        // Full, as stacks of a fixed depth get.
    }
}

void D3DMatrixStack::pop()
{
    if (matrices.size() > 1)
        matrices.pop_back();
}

void D3DMatrixStack::loadIdentity()
{
    std::copy(std::begin(identity), std::end(identity), matrices.back().m);
}

void D3DMatrixStack::multiplyLocal(const float (&m)[16])
{
    const Matrix before = matrices.back();
    float* result = matrices.back().m;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
        {
            float sum = 0.0f;
            for (int k = 0; k < 4; ++k)
                sum += m[row * 4 + k] * before.m[k * 4 + column];
            result[row * 4 + column] = sum;
        }
}

void D3DMatrixStack::rotateLocal(float radians, float x, float y, float z)
{
    const float length = std::sqrt(x * x + y * y + z * z);
    if (!(length > 0.0f))
        return;
    x /= length;
    y /= length;
    z /= length;
    const float c = std::cos(radians);
    const float s = std::sin(radians);
    const float d = 1.0f - c;
    multiplyLocal({x * x * d + c, x * y * d + z * s, x * z * d - y * s, 0.0f, //
                   x * y * d - z * s, y * y * d + c, y * z * d + x * s, 0.0f, //
                   x * z * d + y * s, y * z * d - x * s, z * z * d + c, 0.0f, //
                   0.0f, 0.0f, 0.0f, 1.0f});
}

void D3DMatrixStack::scaleLocal(float x, float y, float z)
{
    multiplyLocal({x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0, 0, 0, 0, 1});
}

void D3DMatrixStack::translateLocal(float x, float y, float z)
{
    multiplyLocal({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1});
}

const float (&D3DMatrixStack::top() const)[16]
{
    return matrices.back().m;
}
