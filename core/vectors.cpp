#include "vornik/core/vectors.h"

#include <cfloat>
#include <cmath>
#include <cstdlib>

void Vertex3D::normalize()
{
    const float length = *this;
    if (length == 0.0f)
    {
        x = y = z = 0.0f;
        return;
    }
    *this /= length;
}

void Cube::setValues(float a, float b, float c, float d, float e, float f)
{
    const float given[6] = {a, b, c, d, e, f};
    for (int i = 0; i < 6; ++i)
        values[i] = given[i];
}

Plane::Plane() : flag(0), faces(nullptr), faceCount(0), id(0), next(nullptr) {}

Plane::~Plane()
{
    // The tail is taken apart one by one, since a long list would exhaust the stack by recursion.
    while (next)
    {
        Plane* following = next;
        next = following->next;
        following->next = nullptr;
        delete following;
    }
    std::free(faces);
}

void Plane::create(int count)
{
    std::free(faces);
    faceCount = count;
    faces =
        static_cast<PlaneList*>(std::malloc(sizeof(PlaneList) * static_cast<size_t>(count > 0 ? count : 1)));
}

void Viewport::reset()
{
    nearClip = 0.01f;
    farClip = 100000.0f;
    fov = 90.0f;
}

void Viewport::calcAspect()
{
    aspect = width / height;
}

void vrkSetVertex2D(Vertex2D* v, float x, float y)
{
    *v = {x, y};
}

void vrkSetVertex3D(Vertex3D* v, float x, float y, float z)
{
    *v = {x, y, z};
}

void vrkSetVertex4D(Vertex4D* v, float w, float x, float y, float z)
{
    *v = {x, y, z, w};
}

void vrkAddVectors(const Vertex3D* a, const Vertex3D* b, Vertex3D* out)
{
    *out = *a + *b;
}

void vrkSubVectors(const Vertex3D* a, const Vertex3D* b, Vertex3D* out)
{
    *out = *a - *b;
}

float dotProd(const Vertex3D* a, const Vertex3D* b)
{
    return a->z * b->z + a->y * b->y + a->x * b->x;
}

float vrkDotVectors(const Vertex3D* a, const Vertex3D* b)
{
    return dotProd(a, b);
}

void crossProd(const Vertex3D* a, const Vertex3D* b, Vertex3D* out)
{
    out->x = a->y * b->z - b->y * a->z;
    out->y = b->x * a->z - a->x * b->z;
    out->z = b->y * a->x - a->y * b->x;
}

float vrkRad(float degrees)
{
    return static_cast<float>(degrees * 0.017453292519943295);
}

float vrkUnRad(float radians)
{
    return static_cast<float>(radians * 57.29577951308232);
}

float vrkDSin(float degrees)
{
    return static_cast<float>(std::sin(static_cast<double>(vrkRad(degrees))));
}

float vrkDCos(float degrees)
{
    return static_cast<float>(std::cos(static_cast<double>(vrkRad(degrees))));
}

float vrkDistance(const Vertex3D* a, const Vertex3D* b)
{
    return std::sqrt(vrkFakeDistance(a, b));
}

float vrkDistance(const Vertex2D* a, const Vertex2D* b)
{
    const float dx = b->x - a->x;
    const float dy = b->y - a->y;
    return std::sqrt(dx * dx + dy * dy);
}

float vrkFakeDistance(const Vertex3D* a, const Vertex3D* b)
{
    const float dx = b->x - a->x;
    const float dy = b->y - a->y;
    const float dz = b->z - a->z;
    return dz * dz + dy * dy + dx * dx;
}

static double degreesOf(double radians)
{
    return radians * 57.29577951308232;
}

float vrkAngle(const Vertex2D* a, const Vertex2D* b)
{
    const float dx = b->x - a->x;
    const float dy = b->y - a->y;
    // In double, so that no square is lost or grows too large, and each value is rounded once.
    const double square = static_cast<double>(dx) * dx + static_cast<double>(dy) * dy;
    float h = static_cast<float>(std::sqrt(square));
    if (h == 0.0f)
        h = 9.999999747378752e-06f;

    const float s = std::fabs(dy) / h; // at most 1, since h is no shorter than dy
    const float c = static_cast<float>(1.0 - static_cast<double>(s) * s);
    const double root = std::sqrt(static_cast<double>(c));
    const double steep = degreesOf(std::atan(root / s));
    const double flat = degreesOf(std::atan(s / root));

    // The quadrants overlap on the axes; the last one that holds wins.
    double angle = 0.0;
    if (b->x >= a->x && b->y < a->y)
        angle = steep;
    if (b->x >= a->x && b->y >= a->y)
        angle = flat + 90.0;
    if (b->x <= a->x && b->y > a->y)
        angle = steep + 180.0;
    if (b->x <= a->x && b->y <= a->y)
        angle = flat + 270.0;
    return static_cast<float>(angle);
}

Vertex2D vrkAngle(const Vertex3D*, const Vertex3D*)
{
    return {0.0f, 0.0f};
}

void vrkCalcAngles(const Vertex3D* a, const Vertex3D* b, float& heading, float& elevation)
{
    const Vertex2D from = {a->x, a->y};
    const Vertex2D to = {b->x, b->y};
    const Vertex2D low = {0.0f, a->z};
    const Vertex2D high = {vrkDistance(&from, &to), b->z};
    heading = vrkAngle(&from, &to);
    elevation = vrkAngle(&low, &high);
}

Vertex3D calcPlaneNormal(const Vertex3D* a, const Vertex3D* b, const Vertex3D* c)
{
    return (*a - *b) ^ (*a - *c);
}

Vertex3D calcNormal(const Vertex3D* a, const Vertex3D* b, const Vertex3D* c)
{
    Vertex3D normal = (*c - *b) ^ (*a - *b);
    normal.normalize();
    return normal;
}

void vrkNormalize(Vertex3D* v)
{
    float length = *v;
    if (length == 0.0f)
        length = FLT_MIN;
    *v /= length;
}

bool intersect(const Vertex3D* tri, const Vertex3D* origin, const Vertex3D* end)
{
    const Vertex3D d = *end - *origin;
    for (int i = 0; i < 3; ++i)
        if (d * calcPlaneNormal(origin, &tri[i], &tri[(i + 1) % 3]) < 0.0f)
            return false;
    return true;
}

void clamp(float* v, float low, float high)
{
    if (*v > high)
        *v = high;
    if (*v < low)
        *v = low;
}

float maximum(float a, float b, float c)
{
    float largest = a;
    if (std::fabs(b) > std::fabs(largest))
        largest = b;
    if (std::fabs(c) > std::fabs(largest))
        largest = c;
    return largest;
}
