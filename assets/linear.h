// 3 x 3 matrices and points in double precision, for working out where nodes stand.
#pragma once

#include <cmath>

#include "vornik/core/vectors.h"

/// Radians in a degree.
constexpr double radiansPerDegree = 3.14159265358979323846 / 180;

struct Point
{
    double x = 0, y = 0, z = 0;

    Point() = default;
    Point(double px, double py, double pz) : x(px), y(py), z(pz) {}
    explicit Point(const Vertex3D& v) : x(v.x), y(v.y), z(v.z) {}
    Point operator+(const Point& b) const { return {x + b.x, y + b.y, z + b.z}; }
    Point operator-(const Point& b) const { return {x - b.x, y - b.y, z - b.z}; }
    Point operator*(double f) const { return {x * f, y * f, z * f}; }
    double length() const { return std::sqrt(x * x + y * y + z * z); }
    Vertex3D toFloats() const
    {
        return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
    }
};

/// Columns are where the axes go.
struct Linear
{
    Point x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1};

    Point operator*(const Point& p) const { return x * p.x + y * p.y + z * p.z; }
    Linear operator*(const Linear& b) const { return {*this * b.x, *this * b.y, *this * b.z}; }
    double determinant() const
    {
        return x.x * (y.y * z.z - y.z * z.y) - y.x * (x.y * z.z - x.z * z.y) + z.x * (x.y * y.z - x.z * y.y);
    }
};

inline Linear stretch(double x, double y, double z)
{
    return {{x, 0, 0}, {0, y, 0}, {0, 0, z}};
}

/// About an axis, by the right hand; no turn for an axis without length. @param angle  radians
inline Linear turn(Point axis, double angle)
{
    const double length = axis.length();
    if (!(length > 1e-12))
        return {};
    axis = axis * (1 / length);
    const double c = std::cos(angle), s = std::sin(angle), t = 1 - c;
    return {{t * axis.x * axis.x + c, t * axis.x * axis.y + s * axis.z, t * axis.x * axis.z - s * axis.y},
            {t * axis.x * axis.y - s * axis.z, t * axis.y * axis.y + c, t * axis.y * axis.z + s * axis.x},
            {t * axis.x * axis.z + s * axis.y, t * axis.y * axis.z - s * axis.x, t * axis.z * axis.z + c}};
}

/// The turn in a set of axes: columns of unit length, mirrored back where they are mirrored.
inline Linear turnIn(const Linear& axes)
{
    const double sign = axes.determinant() < 0 ? -1 : 1;
    const auto unit = [sign](const Point& p) { return p.length() > 0 ? p * (sign / p.length()) : p; };
    return {unit(axes.x), unit(axes.y), unit(axes.z)};
}

/// Where something stands in the world, and what its axes have become.
struct Pose
{
    Point origin;
    Linear axes;
};

/// @return false for a matrix that flattens space or holds what is no number
inline bool invert(const Linear& m, Linear* inverse)
{
    const double d = m.determinant();
    if (!std::isfinite(d) || !std::isfinite(1 / d))
        return false;
    const auto cross = [](const Point& a, const Point& b) {
        return Point{a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
    };
    const Point a = cross(m.y, m.z) * (1 / d), b = cross(m.z, m.x) * (1 / d), c = cross(m.x, m.y) * (1 / d);
    *inverse = {{a.x, b.x, c.x}, {a.y, b.y, c.y}, {a.z, b.z, c.z}};
    return true;
}
