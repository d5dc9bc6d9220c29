#pragma once

#include "mathbase/mb_unit_length.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace zavex::mathbase {

/** A pair of floats: a point, a size or a texture coordinate. A plain value, stored contiguously.
 */
struct Vector2f {
    constexpr Vector2f() = default;
    constexpr Vector2f(float newX, float newY) : x(newX), y(newY) {}

    constexpr Vector2f operator+(const Vector2f& v) const { return {x + v.x, y + v.y}; }
    constexpr Vector2f operator-(const Vector2f& v) const { return {x - v.x, y - v.y}; }
    constexpr Vector2f operator-() const { return {-x, -y}; }
    constexpr Vector2f operator*(float factor) const { return {x * factor, y * factor}; }
    constexpr Vector2f& operator+=(const Vector2f& v) { return *this = *this + v; }
    constexpr Vector2f& operator-=(const Vector2f& v) { return *this = *this - v; }
    constexpr Vector2f& operator*=(float factor) { return *this = *this * factor; }
    constexpr Vector2f& operator/=(float divisor) { return *this = {x / divisor, y / divisor}; }
    constexpr bool operator==(const Vector2f&) const = default;

    /** The component; `index` must be in 0..1. */
    constexpr float& operator[](int index) { return index == 0 ? x : y; }
    constexpr float operator[](int index) const { return index == 0 ? x : y; }

    /** The two components in memory, x first. */
    operator const float*() const { return reinterpret_cast<const float*>(this); }

    /** The component-wise product. */
    constexpr Vector2f multiply(const Vector2f& v) const { return {x * v.x, y * v.y}; }

    constexpr float dot(const Vector2f& v) const { return x * v.x + y * v.y; }
    float length() const { return std::sqrt(length2()); }
    constexpr float length2() const { return dot(*this); }

    /** Scales to unit length; stays as it is, with a log line, when it is 1e-10 long or less. */
    void normalize() { *this = getNormalized(); }

    /** This vector at unit length, or as it is where `normalize` leaves it so. */
    Vector2f getNormalized() const
    {
        const long double length = std::hypot(static_cast<long double>(x), y);
        return *this * toUnitLength(length);
    }

    /** The component-wise minimum and maximum of the two vectors. */
    constexpr Vector2f min(const Vector2f& v) const { return {std::min(x, v.x), std::min(y, v.y)}; }
    constexpr Vector2f max(const Vector2f& v) const { return {std::max(x, v.x), std::max(y, v.y)}; }

    /** Lowers (`mini`) or raises (`maxi`) each component of this vector to that of `v`. */
    constexpr void mini(const Vector2f& v) { *this = min(v); }
    constexpr void maxi(const Vector2f& v) { *this = max(v); }

    constexpr float getMin() const { return std::min(x, y); }
    constexpr float getMax() const { return std::max(x, y); }
    constexpr float product() const { return x * y; }
    constexpr float getMean() const { return (x + y) / 2.0f; }

    float x = 0.0f;
    float y = 0.0f;
};

static_assert(sizeof(Vector2f) == 2 * sizeof(float));
static_assert(std::is_standard_layout_v<Vector2f> && std::is_trivially_copyable_v<Vector2f>);

} // namespace zavex::mathbase
