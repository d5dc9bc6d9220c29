#pragma once

#include "mathbase/mb_box.h"
#include "mathbase/mb_vector2.h"
#include "mathbase/mb_vector3.h"
#include "mathbase/mb_vector4.h"

#include <algorithm>
#include <cstdint>

namespace zavex::mathbase {

/**
 * The seed that generators start from: the environment variable CADENZA_SEED, read as an unsigned
 * decimal number, so that a run can be repeated; else `otherwise`. A variable that is no such
 * number is logged and does not count.
 */
std::uint32_t initialSeed(std::uint32_t otherwise);

/** As above; else the processor clock count, so that runs differ. */
std::uint32_t initialSeed();

/** What single precision draws in [0, 1) are cut at. */
inline constexpr float LARGEST_BELOW_ONE = 0x1.fffffep-1f;

/**
 * A linear congruential generator modulo 2^32.
 *
 * Seeding leaves the state two steps from the seed.
 */
template <std::uint32_t MULTIPLIER, std::uint32_t INCREMENT>
class RandomGen_LCG {
public:
    constexpr explicit RandomGen_LCG(std::uint32_t seed = 0) { setSeed(seed); }

    constexpr void setSeed(std::uint32_t seed)
    {
        mX = seed;
        nextLong();
        nextLong();
    }

    /** Steps and returns the new state, in 0..`getMaxLong()`. */
    constexpr std::uint32_t nextLong() { return mX = mX * MULTIPLIER + INCREMENT; }

    constexpr std::uint32_t getMaxLong() const { return UINT32_MAX; }

    /**
     * Steps and returns the state times 2^-32, in [0, 1): the 128 topmost states, whose product
     * rounds to 1, give the largest float below 1.
     */
    constexpr float nextFloat()
    {
        return std::min(static_cast<float>(nextLong()) * 2.3283064e-10f, LARGEST_BELOW_ONE);
    }

    /** Steps and returns the state times 2^-32, in [0, 1). */
    constexpr double nextDouble() { return nextLong() * 0x1p-32; }

    std::uint32_t mX = 0;
};

/** The same operations on the C library's `rand`, whose one state all instances share. */
class RandomGen_Rand { // NOLINT(readability-identifier-naming): a fixed name
public:
    void setSeed(std::uint32_t seed);

    /** In 0..`getMaxLong()`. */
    std::uint32_t nextLong();

    std::uint32_t getMaxLong() const;

    /** In [0, 1). */
    float nextFloat();
    double nextDouble();
};

/**
 * Draws typed values from one generator that it holds.
 *
 * Angles are in radians. Axes, normals and directions that are passed need not be of unit length
 * but must not be 0; directions that are returned are of unit length. Draws "uniform" over a
 * surface or a solid have equal chance for equal area, solid angle or volume. Components are drawn
 * in the order x, y, z, w.
 */
template <typename Generator>
class RandomBase {
public:
    explicit RandomBase(std::uint32_t seed = 0) { setSeed(seed); }

    void setSeed(std::uint32_t seed) { mGen.setSeed(seed); }

    /** A whole number in `lo`..`hi`, both included; `lo` must not be above `hi`. */
    int uniform(int lo, int hi);

    /** `lo` + (`hi` - `lo`) * [0, 1). */
    float uniform(float lo, float hi) { return lo + (hi - lo) * mGen.nextFloat(); }

    /** Every component as `uniform` between the same two limits, or between its own. */
    Vector2f uniform2(float lo, float hi) { return {uniform(lo, hi), uniform(lo, hi)}; }
    Vector2f uniform2(const Vector2f& lo, const Vector2f& hi);
    Vector3f uniform3(float lo, float hi) { return uniform3({lo, lo, lo}, {hi, hi, hi}); }
    Vector3f uniform3(const Vector3f& lo, const Vector3f& hi);
    Vector4f uniform4(float lo, float hi) { return uniform4({lo, lo, lo, lo}, {hi, hi, hi, hi}); }
    Vector4f uniform4(const Vector4f& lo, const Vector4f& hi);

    /** A direction, uniform over the unit sphere. */
    Vector3f randomOnSphere() { return randomSphereThetaLimit({0.0f, 0.0f, 1.0f}, PI); }

    /** A point uniform in the ball of `radius` about the origin. */
    Vector3f randomInSphere(float radius);

    /** A point uniform in, or on the surface of, the ellipsoid with the half axes `radii`. */
    Vector3f randomInEllipsoid(const Vector3f& radii) { return randomInSphere(1).multiply(radii); }
    Vector3f randomOnEllipsoid(const Vector3f& radii);

    /** A direction, uniform among those at most `thetaLimit` (in 0..pi) away from `axis`. */
    Vector3f randomSphereThetaLimit(const Vector3f& axis, float thetaLimit);

    /** A direction, uniform over the hemisphere about `normal`. */
    Vector3f randomHemisphere(const Vector3f& normal);

    /** A direction with a density proportional to the cosine of its angle to `normal`. */
    Vector3f randomCosineHemisphere(const Vector3f& normal);

    /** The same with the cosine raised to `power`, which must not be negative. */
    Vector3f randomCosinePowHemisphere(const Vector3f& normal, float power);

    /**
     * A direction, uniform over the part of the unit sphere between two angles from the z axis
     * (x of both arguments, in 0..pi) and two angles about it, from x towards y (y of both).
     */
    Vector3f randomSphereQuad(const Vector2f& minThetaPhi, const Vector2f& maxThetaPhi);

    /**
     * A point on the surface of `box` where parallel rays that travel along `direction` first hit
     * it, each ray being as likely as any other.
     *
     * @param normal  The outward unit normal of the side that is hit.
     */
    Vector3f randomBoxSurfaceHitFromDir(const Box3& box, const Vector3f& direction,
                                        Vector3f& normal);
    Vector3f randomBoxSurfaceHitFromDir(const Box3& box, const Vector3f& direction);

    Generator mGen;

private:
    static constexpr float PI = 3.14159265f;

    /** The direction at `cosTheta` from `axis`, at a drawn angle about it. */
    Vector3f aroundAxis(const Vector3f& axis, float cosTheta);
};

extern template class RandomBase<RandomGen_LCG<69069u, 5u>>;
extern template class RandomBase<RandomGen_Rand>;

} // namespace zavex::mathbase
