#pragma once

#include "mathbase/mb_unit_length.h"
#include "mathbase/mb_vector3.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace zavex::mathbase {

/**
 * Four floats: a homogeneous point, or an RGBA colour (x red, y green, z blue, w alpha, each in
 * 0..1). A plain value, stored contiguously.
 */
struct Vector4f {
    constexpr Vector4f() = default;
    constexpr Vector4f(float newX, float newY, float newZ, float newW)
        : x(newX), y(newY), z(newZ), w(newW)
    {}
    constexpr explicit Vector4f(const Vector3f& v, float newW = 1.0f)
        : x(v.x), y(v.y), z(v.z), w(newW)
    {}

    /** Takes x, y and z from `v` and sets w to 1: a point, or an opaque colour. */
    constexpr Vector4f& operator=(const Vector3f& v) { return *this = Vector4f(v); }

    constexpr Vector4f operator+(const Vector4f& v) const
    {
        return {x + v.x, y + v.y, z + v.z, w + v.w};
    }
    constexpr Vector4f operator-(const Vector4f& v) const
    {
        return {x - v.x, y - v.y, z - v.z, w - v.w};
    }
    constexpr Vector4f operator-() const { return {-x, -y, -z, -w}; }
    constexpr Vector4f operator*(float factor) const
    {
        return {x * factor, y * factor, z * factor, w * factor};
    }
    constexpr Vector4f& operator+=(const Vector4f& v) { return *this = *this + v; }
    constexpr Vector4f& operator-=(const Vector4f& v) { return *this = *this - v; }
    constexpr Vector4f& operator*=(float factor) { return *this = *this * factor; }
    constexpr Vector4f& operator/=(float divisor)
    {
        return *this = {x / divisor, y / divisor, z / divisor, w / divisor};
    }
    constexpr bool operator==(const Vector4f&) const = default;

    /** The component; `index` must be in 0..3. */
    constexpr float& operator[](int index)
    {
        return index < 2 ? (index == 0 ? x : y) : (index == 2 ? z : w);
    }
    constexpr float operator[](int index) const
    {
        return index < 2 ? (index == 0 ? x : y) : (index == 2 ? z : w);
    }

    /** The four components in memory, x first. */
    operator const float*() const { return reinterpret_cast<const float*>(this); }

    /** The component-wise product. */
    constexpr Vector4f multiply(const Vector4f& v) const
    {
        return {x * v.x, y * v.y, z * v.z, w * v.w};
    }

    constexpr float dot(const Vector4f& v) const { return x * v.x + y * v.y + z * v.z + w * v.w; }

    /** The products of x, y and z only. */
    constexpr float dot(const Vector3f& v) const { return x * v.x + y * v.y + z * v.z; }

    float length() const { return std::sqrt(length2()); }
    constexpr float length2() const { return dot(*this); }

    /** Scales to unit length; stays as it is, with a log line, when it is 1e-10 long or less. */
    void normalize() { *this = getNormalized(); }

    /** This vector at unit length, or as it is where `normalize` leaves it so. */
    Vector4f getNormalized() const
    {
        const long double length = std::hypot(std::hypot(static_cast<long double>(x), y),
                                              std::hypot(static_cast<long double>(z), w));
        return *this * toUnitLength(length);
    }

    /** The component-wise minimum and maximum of the two vectors. */
    constexpr Vector4f min(const Vector4f& v) const
    {
        return {std::min(x, v.x), std::min(y, v.y), std::min(z, v.z), std::min(w, v.w)};
    }
    constexpr Vector4f max(const Vector4f& v) const
    {
        return {std::max(x, v.x), std::max(y, v.y), std::max(z, v.z), std::max(w, v.w)};
    }

    /** Lowers (`mini`) or raises (`maxi`) each component of this vector to that of `v`. */
    constexpr void mini(const Vector4f& v) { *this = min(v); }
    constexpr void maxi(const Vector4f& v) { *this = max(v); }

    /** Clamps every component to `minimum`..`maximum`; `minimum` must not be above `maximum`. */
    constexpr void setMinMax(float minimum, float maximum)
    {
        maxi({minimum, minimum, minimum, minimum});
        mini({maximum, maximum, maximum, maximum});
    }

    constexpr float getMin() const { return std::min({x, y, z, w}); }
    constexpr float getMax() const { return std::max({x, y, z, w}); }
    constexpr float product() const { return x * y * z * w; }
    constexpr float getMean() const { return (x + y + z + w) / 4.0f; }

    /** The luma of the colour as in `Vector3T::getIntensity`; alpha does not count. */
    constexpr float getIntensity() const { return Vector3f{x, y, z}.getIntensity(); }

    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;
    float w = 0.0f;
};

static_assert(sizeof(Vector4f) == 4 * sizeof(float));
static_assert(std::is_standard_layout_v<Vector4f> && std::is_trivially_copyable_v<Vector4f>);

} // namespace zavex::mathbase
