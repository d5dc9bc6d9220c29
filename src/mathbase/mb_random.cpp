#include "mathbase/mb_random.h"

#include "common/zvx_system.h"
#include "mathbase/mb_quat.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace zavex::mathbase {

namespace {

/** The direction at `phi` about the z axis whose angle to it has the cosine `cosTheta`. */
Vector3f fromAngles(float cosTheta, float phi)
{
    const float sinTheta = std::sqrt(std::max(0.0f, 1.0f - cosTheta * cosTheta));
    return {sinTheta * std::cos(phi), sinTheta * std::sin(phi), cosTheta};
}

} // namespace

std::uint32_t initialSeed()
{
    return initialSeed(static_cast<std::uint32_t>(std::clock()));
}

std::uint32_t initialSeed(std::uint32_t otherwise)
{
    const char* text = std::getenv("CADENZA_SEED");
    if (text != nullptr) {
        std::uint32_t seed = 0;
        const char* end = text + std::strlen(text);
        const auto [stop, error] = std::from_chars(text, end, seed);
        if (error == std::errc{} && stop == end)
            return seed;
        ZVX_LOG("log", "app", "CADENZA_SEED is no unsigned 32-bit number: \"%s\"", text);
    }
    return otherwise;
}

void RandomGen_Rand::setSeed(std::uint32_t seed)
{
    std::srand(seed);
}

std::uint32_t RandomGen_Rand::nextLong()
{
    return static_cast<std::uint32_t>(std::rand());
}

std::uint32_t RandomGen_Rand::getMaxLong() const
{
    return RAND_MAX;
}

float RandomGen_Rand::nextFloat()
{
    return std::min(static_cast<float>(nextDouble()), LARGEST_BELOW_ONE);
}

double RandomGen_Rand::nextDouble()
{
    return nextLong() / (RAND_MAX + 1.0);
}

template <typename Generator>
int RandomBase<Generator>::uniform(int lo, int hi)
{
    ZVX_REQUIRE(lo <= hi, "lo<=hi");
    // By multiplication: the low bits of a linear congruential generator are hardly random.
    const std::uint64_t count = static_cast<std::uint64_t>(std::int64_t{hi} - lo) + 1;
    const std::uint64_t states = std::uint64_t{mGen.getMaxLong()} + 1;
    return static_cast<int>(lo + static_cast<std::int64_t>(mGen.nextLong() * count / states));
}

template <typename Generator>
Vector2f RandomBase<Generator>::uniform2(const Vector2f& lo, const Vector2f& hi)
{
    return {uniform(lo.x, hi.x), uniform(lo.y, hi.y)};
}

template <typename Generator>
Vector3f RandomBase<Generator>::uniform3(const Vector3f& lo, const Vector3f& hi)
{
    return {uniform(lo.x, hi.x), uniform(lo.y, hi.y), uniform(lo.z, hi.z)};
}

template <typename Generator>
Vector4f RandomBase<Generator>::uniform4(const Vector4f& lo, const Vector4f& hi)
{
    return {uniform(lo.x, hi.x), uniform(lo.y, hi.y), uniform(lo.z, hi.z), uniform(lo.w, hi.w)};
}

template <typename Generator>
Vector3f RandomBase<Generator>::randomInSphere(float radius)
{
    const Vector3f direction = randomOnSphere();
    return direction * (radius * std::cbrt(mGen.nextFloat()));
}

template <typename Generator>
Vector3f RandomBase<Generator>::randomOnEllipsoid(const Vector3f& radii)
{
    // A point of the sphere is kept with the chance that its surroundings are stretched by.
    const Vector3f stretch{radii.y * radii.z, radii.x * radii.z, radii.x * radii.y};
    const float most = stretch.getMax();
    Vector3f point = randomOnSphere();
    while (point.multiply(stretch).length() < mGen.nextFloat() * most)
        point = randomOnSphere();
    return point.multiply(radii);
}

template <typename Generator>
Vector3f RandomBase<Generator>::randomSphereThetaLimit(const Vector3f& axis, float thetaLimit)
{
    return aroundAxis(axis, uniform(std::cos(thetaLimit), 1.0f));
}

template <typename Generator>
Vector3f RandomBase<Generator>::randomHemisphere(const Vector3f& normal)
{
    return aroundAxis(normal, mGen.nextFloat());
}

template <typename Generator>
Vector3f RandomBase<Generator>::randomCosineHemisphere(const Vector3f& normal)
{
    return randomCosinePowHemisphere(normal, 1.0f);
}

template <typename Generator>
Vector3f RandomBase<Generator>::randomCosinePowHemisphere(const Vector3f& normal, float power)
{
    return aroundAxis(normal, std::pow(mGen.nextFloat(), 1.0f / (power + 1.0f)));
}

template <typename Generator>
Vector3f RandomBase<Generator>::randomSphereQuad(const Vector2f& minThetaPhi,
                                                 const Vector2f& maxThetaPhi)
{
    const float cosTheta = uniform(std::cos(minThetaPhi.x), std::cos(maxThetaPhi.x));
    return fromAngles(cosTheta, uniform(minThetaPhi.y, maxThetaPhi.y));
}

template <typename Generator>
Vector3f RandomBase<Generator>::randomBoxSurfaceHitFromDir(const Box3& box,
                                                           const Vector3f& direction,
                                                           Vector3f& normal)
{
    // The sides that face the rays share them by the area that the rays see of each.
    const Vector3f size = box.getSize();
    const Vector3f seen{std::abs(direction.x) * size.y * size.z,
                        std::abs(direction.y) * size.x * size.z,
                        std::abs(direction.z) * size.x * size.y};
    float rest = uniform(0.0f, seen.x + seen.y + seen.z);
    int axis = seen.getMajorAxis();
    for (int i = 0; i < 3; ++i) {
        if (rest < seen[i]) {
            axis = i;
            break;
        }
        rest -= seen[i];
    }

    const bool entersAtMin = direction[axis] > 0.0f;
    normal = {};
    normal[axis] = entersAtMin ? -1.0f : 1.0f;
    Vector3f point = uniform3(box.mMin, box.mMax);
    point[axis] = box[entersAtMin ? 0 : 1][axis];
    return point;
}

template <typename Generator>
Vector3f RandomBase<Generator>::randomBoxSurfaceHitFromDir(const Box3& box,
                                                           const Vector3f& direction)
{
    Vector3f normal;
    return randomBoxSurfaceHitFromDir(box, direction, normal);
}

template <typename Generator>
Vector3f RandomBase<Generator>::aroundAxis(const Vector3f& axis, float cosTheta)
{
    const Vector3f aroundZ = fromAngles(cosTheta, uniform(0.0f, 2.0f * PI));
    return Quatf({0.0f, 0.0f, 1.0f}, axis) * aroundZ;
}

template class RandomBase<RandomGen_LCG<69069u, 5u>>;
template class RandomBase<RandomGen_Rand>;

} // namespace zavex::mathbase
