// The world matrices of rasterizer 1: a stack that the calls change at its top, on the local side, so that
// the newest transform acts on a vertex first. Rows are vectors in memory, which is OpenGL's layout, too.
#pragma once

#include <vector>

class D3DMatrixStack
{
public:
    D3DMatrixStack();

    /// Doubles the top, unless there is no memory.
    void push();
    /// Takes the top away; the last matrix stays.
    void pop();
    void loadIdentity();
    void multiplyLocal(const float (&m)[16]);
    /// About an axis of any length. An axis of none turns nothing.
    void rotateLocal(float radians, float x, float y, float z);
    void scaleLocal(float x, float y, float z);
    void translateLocal(float x, float y, float z);

    /// Stands until the next call.
    const float (&top() const)[16];

private:
    struct Matrix
    {
        float m[16];
    };
    std::vector<Matrix> matrices; // never empty
};
