#pragma once

#include "mathbase/mb_vector3.h"

namespace zavex::mathbase {

/**
 * The order in which the rotations about the three axes are multiplied, left to right as the
 * letters stand: in `XYZ` the rotation about z is applied to a vector first.
 */
struct RotationOrder {
    enum Order : int { XYZ = 0, XZY = 1, YXZ = 2, ZXY = 3, YZX = 4, ZYX = 5 };

    constexpr RotationOrder() = default;
    constexpr RotationOrder(Order order) : value(order) {}

    /** From the stored number, which is not checked here; `Quatf::setEuler` does. */
    constexpr explicit RotationOrder(int order) : value(order) {}

    constexpr bool operator==(const RotationOrder&) const = default;
    constexpr bool operator==(Order order) const { return value == order; }

    /** Becomes the order with the letters reversed, which undoes this one's rotations. */
    constexpr void invert() { *this = getInverse(); }

    constexpr int asInt() const { return value; }

    /** The order with the letters reversed: `XYZ` gives `ZYX`. */
    constexpr RotationOrder getInverse() const { return RotationOrder(ZYX - value); }

    int value = XYZ;
};

/** Rotation angles about x, y and z, in radians, and the order in which they are multiplied. */
struct Euler {
    constexpr Euler() = default;
    constexpr explicit Euler(const Vector3f& newAngles, RotationOrder newOrder = RotationOrder::XYZ)
        : angles(newAngles), order(newOrder)
    {}
    constexpr Euler(float x, float y, float z, RotationOrder newOrder = RotationOrder::XYZ)
        : angles(x, y, z), order(newOrder)
    {}

    Vector3f angles; // radians
    RotationOrder order;
};

using Eulerf = Euler;

} // namespace zavex::mathbase
