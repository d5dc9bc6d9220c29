#include "mathbase/mb_quat.h"

#include "common/zvx_system.h"
#include "mathbase/mb_vector4.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace zavex::mathbase {

namespace {

constexpr double OPPOSITE = 1e-8; // |a + b| of two unit vectors that count as opposite

// The axes, x being 0, in the order of the letters of each `RotationOrder`.
constexpr int AXES_BY_ORDER[6][3] = {
    {0, 1, 2},
    {0, 2, 1},
    {1, 0, 2},
    {2, 0, 1},
    {1, 2, 0},
    {2, 1, 0},
};

/** Whether normalising could bring the vector to unit length. */
bool isUnit(const Vector3f& normalized)
{
    return normalized.length2() > 0.5f;
}

/**
 * `v` at unit length, in double precision: of nearly opposite directions, the sum and the product
 * keep few of the digits that each of them has.
 */
std::array<double, 3> directionOf(const Vector3f& v)
{
    const double factor = 1.0 / std::hypot(double{v.x}, double{v.y}, double{v.z});
    return {v.x * factor, v.y * factor, v.z * factor};
}

/** Some unit vector at right angles to `v`. */
Vector3f perpendicularTo(const Vector3f& v)
{
    Vector3f leastAlong;
    leastAlong[v.getMinorAxis()] = 1.0f;
    return v.cross(leastAlong).getNormalized();
}

} // namespace

void Quatf::setEuler(const Euler& euler)
{
    const int order = euler.order.asInt();
    if (order < RotationOrder::XYZ || order > RotationOrder::ZYX) {
        ZVX_LOG("log", "app", "order.value>=0 && order.value<=5: found %d", order);
        return;
    }

    Quatf about[3];
    about[0].setRotX(euler.angles.x);
    about[1].setRotY(euler.angles.y);
    about[2].setRotZ(euler.angles.z);

    const auto& axes = AXES_BY_ORDER[order];
    *this = about[axes[0]] * about[axes[1]] * about[axes[2]];
}

void Quatf::setOrientation(const Vector3f& from, const Vector3f& to)
{
    if (!isUnit(from.getNormalized()) || !isUnit(to.getNormalized())) {
        *this = {};
        return;
    }

    // |start + end| is twice the cosine of half the angle, |start x end| the sine of the whole one.
    const auto start = directionOf(from);
    const auto end = directionOf(to);
    const double sum = std::hypot(start[0] + end[0], start[1] + end[1], start[2] + end[2]);
    if (sum < OPPOSITE) {
        const Vector3f axis = perpendicularTo(from.getNormalized());
        *this = {0.0f, axis.x, axis.y, axis.z};
        return;
    }
    const auto imaginary = [&](std::size_t i, std::size_t j) {
        return static_cast<float>((start[i] * end[j] - start[j] * end[i]) / sum);
    };
    *this = {static_cast<float>(sum / 2.0), imaginary(1, 2), imaginary(2, 0), imaginary(0, 1)};
}

void Quatf::setAngleAxis(float angle, const Vector3f& axis)
{
    const Vector3f unit = axis.getNormalized();
    if (!isUnit(unit)) {
        *this = {};
        return;
    }
    const Vector3f scaled = unit * std::sin(angle / 2.0f);
    *this = {std::cos(angle / 2.0f), scaled.x, scaled.y, scaled.z};
}

void Quatf::getAngleAxis(float& angle, Vector3f& axis) const
{
    const Vector3f imaginary{x, y, z};
    const float sine = imaginary.length();
    angle = 2.0f * std::atan2(sine, w);
    axis = sine > 0.0f ? imaginary * (1.0f / sine) : Vector3f{1.0f, 0.0f, 0.0f};
}

void Quatf::normalize()
{
    const Vector4f unit = Vector4f{w, x, y, z}.getNormalized();
    *this = {unit.x, unit.y, unit.z, unit.w};
}

Quatf Quatf::getInverse() const
{
    const float norm = length2();
    if (!(norm > 0.0f)) {
        ZVX_LOG("log", "app", "length2>0: a quaternion without length is not inverted");
        return *this;
    }
    return Quatf{w, -x, -y, -z} * (1.0f / norm);
}

} // namespace zavex::mathbase
