#pragma once

#include "mathbase/mb_euler.h"
#include "mathbase/mb_vector3.h"

#include <cmath>

namespace zavex::mathbase {

/**
 * A quaternion, the scalar part first. A unit quaternion stands for a rotation, right-handed: seen
 * against the axis, a positive angle turns anticlockwise. Angles are in radians.
 */
struct Quatf {
    /** The identity rotation. */
    constexpr Quatf() = default;
    constexpr Quatf(float newW, float newX, float newY, float newZ)
        : w(newW), x(newX), y(newY), z(newZ)
    {}

    /** As `setEuler`, `setAngleAxis` and `setOrientation`. */
    explicit Quatf(const Euler& euler) { setEuler(euler); }
    Quatf(float angle, const Vector3f& axis) { setAngleAxis(angle, axis); }
    Quatf(const Vector3f& from, const Vector3f& to) { setOrientation(from, to); }

    /**
     * The product of the rotations about the three axes, in the order that the letters of
     * `euler.order` name, left to right. An order outside 0..5 is logged and changes nothing.
     */
    void setEuler(const Euler& euler);

    /**
     * The shortest rotation that turns the direction `from` onto the direction `to`. Opposite
     * directions give half a turn about an axis at right angles to them. Neither needs to be of
     * unit length; one that is 1e-10 long or less is logged and nothing is turned.
     */
    void setOrientation(const Vector3f& from, const Vector3f& to);

    void setRotX(float angle) { *this = {std::cos(angle / 2.0f), std::sin(angle / 2.0f), 0, 0}; }
    void setRotY(float angle) { *this = {std::cos(angle / 2.0f), 0, std::sin(angle / 2.0f), 0}; }
    void setRotZ(float angle) { *this = {std::cos(angle / 2.0f), 0, 0, std::sin(angle / 2.0f)}; }

    /**
     * `axis` needs not be of unit length; one that is 1e-10 long or less is logged and nothing is
     * turned.
     */
    void setAngleAxis(float angle, const Vector3f& axis);

    /**
     * The rotation of this unit quaternion: `angle` in 0..2 pi and a unit `axis`, which is x where
     * nothing is rotated.
     */
    void getAngleAxis(float& angle, Vector3f& axis) const;

    /** The Hamilton product: the rotation `b` followed by this one. */
    constexpr Quatf operator*(const Quatf& b) const
    {
        return {w * b.w - x * b.x - y * b.y - z * b.z, w * b.x + x * b.w + y * b.z - z * b.y,
                w * b.y + y * b.w + z * b.x - x * b.z, w * b.z + z * b.w + x * b.y - y * b.x};
    }
    constexpr Quatf& operator*=(const Quatf& b) { return *this = *this * b; }

    constexpr Quatf operator*(float factor) const
    {
        return {w * factor, x * factor, y * factor, z * factor};
    }
    constexpr Quatf& operator*=(float factor) { return *this = *this * factor; }

    /** `v` rotated by this quaternion, which must be of unit length. */
    constexpr Vector3f operator*(const Vector3f& v) const
    {
        const Vector3f axis{x, y, z};
        const Vector3f twice = axis.cross(v) * 2.0f;
        return v + twice * w + axis.cross(twice);
    }

    constexpr bool operator==(const Quatf&) const = default;

    /** Scales to unit length; stays as it is, with a log line, when it is 1e-10 long or less. */
    void normalize();

    /** Becomes its inverse, see `getInverse`. */
    void invert() { *this = getInverse(); }

    float length() const { return std::sqrt(length2()); }
    constexpr float length2() const { return w * w + x * x + y * y + z * z; }

    /**
     * The quaternion whose product with this one is the identity; the conjugate when this one is
     * of unit length. One whose components are all 0 is logged and returned as it is.
     */
    Quatf getInverse() const;

    float w = 1.0f;
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;
};

} // namespace zavex::mathbase
