#pragma once

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace zavex::mathbase {

/**
 * Three components: a point, a direction, a size or an RGB colour. A plain value, stored
 * contiguously. Only the `float` instance exists, under the name `Vector3f`.
 */
template <typename T>
struct Vector3T {
    constexpr Vector3T() = default;
    constexpr Vector3T(T newX, T newY, T newZ) : x(newX), y(newY), z(newZ) {}

    constexpr Vector3T operator+(const Vector3T& v) const { return {x + v.x, y + v.y, z + v.z}; }
    constexpr Vector3T operator-(const Vector3T& v) const { return {x - v.x, y - v.y, z - v.z}; }
    constexpr Vector3T operator-() const { return {-x, -y, -z}; }
    constexpr Vector3T operator*(T factor) const { return {x * factor, y * factor, z * factor}; }
    constexpr Vector3T& operator+=(const Vector3T& v) { return *this = *this + v; }
    constexpr Vector3T& operator-=(const Vector3T& v) { return *this = *this - v; }
    constexpr Vector3T& operator*=(T factor) { return *this = *this * factor; }
    constexpr Vector3T& operator*=(const Vector3T& v) { return *this = multiply(v); }
    constexpr Vector3T& operator/=(T divisor)
    {
        return *this = {x / divisor, y / divisor, z / divisor};
    }
    constexpr bool operator==(const Vector3T&) const = default;

    /** The component; `index` must be in 0..2. */
    constexpr T& operator[](int index) { return index == 0 ? x : (index == 1 ? y : z); }
    constexpr T operator[](int index) const { return index == 0 ? x : (index == 1 ? y : z); }
    constexpr T& operator()(int index) { return (*this)[index]; }
    constexpr T operator()(int index) const { return (*this)[index]; }

    /** The three components in memory, x first. */
    operator const T*() const { return reinterpret_cast<const T*>(this); }

    /** The component-wise product. */
    constexpr Vector3T multiply(const Vector3T& v) const { return {x * v.x, y * v.y, z * v.z}; }

    constexpr T dot(const Vector3T& v) const { return x * v.x + y * v.y + z * v.z; }
    T length() const { return std::sqrt(length2()); }
    constexpr T length2() const { return dot(*this); }

    /**
     * Scales to unit length; the length is taken in extended precision. Stays as it is, with a log
     * line, when it is 1e-10 long or less.
     */
    void normalize();

    /** This vector at unit length, or as it is where `normalize` leaves it so. */
    Vector3T getNormalized() const
    {
        Vector3T unit = *this;
        unit.normalize();
        return unit;
    }

    /** The component-wise minimum and maximum of the two vectors. */
    constexpr Vector3T min(const Vector3T& v) const
    {
        return {std::min(x, v.x), std::min(y, v.y), std::min(z, v.z)};
    }
    constexpr Vector3T max(const Vector3T& v) const
    {
        return {std::max(x, v.x), std::max(y, v.y), std::max(z, v.z)};
    }

    /** Lowers (`mini`) or raises (`maxi`) each component of this vector to that of `v`. */
    constexpr void mini(const Vector3T& v) { *this = min(v); }
    constexpr void maxi(const Vector3T& v) { *this = max(v); }

    constexpr T getMin() const { return std::min({x, y, z}); }
    constexpr T getMax() const { return std::max({x, y, z}); }
    constexpr T product() const { return x * y * z; }
    constexpr T getMean() const { return (x + y + z) / T(3); }

    /** The luma of an RGB colour: 0.299 red, 0.587 green, 0.114 blue (ITU-R BT.601). */
    constexpr T getIntensity() const { return T(0.299) * x + T(0.587) * y + T(0.114) * z; }

    /** The right-handed cross product: x cross y is z. `crossRHS` is the same under its full name.
     */
    constexpr Vector3T cross(const Vector3T& v) const { return crossRHS(v); }
    constexpr Vector3T crossRHS(const Vector3T& v) const
    {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }

    /** The left-handed cross product: x cross y is -z. */
    constexpr Vector3T crossLHS(const Vector3T& v) const { return v.crossRHS(*this); }

    /** This vector, as an incoming direction, mirrored at the plane with the unit `normal`. */
    constexpr Vector3T reflection(const Vector3T& normal) const
    {
        return *this - normal * (T(2) * dot(normal));
    }

    /**
     * The index, in 0..2, of the component of smallest (`getMinorAxis`) or greatest
     * (`getMajorAxis`) magnitude; the first of them when several are equal.
     */
    int getMinorAxis() const
    {
        const Vector3T size{std::abs(x), std::abs(y), std::abs(z)};
        return size.x <= size.y ? (size.x <= size.z ? 0 : 2) : (size.y <= size.z ? 1 : 2);
    }
    int getMajorAxis() const
    {
        const Vector3T size{std::abs(x), std::abs(y), std::abs(z)};
        return size.x >= size.y ? (size.x >= size.z ? 0 : 2) : (size.y >= size.z ? 1 : 2);
    }

    /** The component-wise reciprocal; a zero component gives infinity. */
    constexpr Vector3T byOne() const { return {T(1) / x, T(1) / y, T(1) / z}; }

    T x{};
    T y{};
    T z{};
};

template <>
void Vector3T<float>::normalize();

using Vector3f = Vector3T<float>;

static_assert(sizeof(Vector3f) == 3 * sizeof(float));
static_assert(std::is_standard_layout_v<Vector3f> && std::is_trivially_copyable_v<Vector3f>);

} // namespace zavex::mathbase
