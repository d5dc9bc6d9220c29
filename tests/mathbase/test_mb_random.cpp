#include "mathbase/mb_random.h"

#include "near.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <functional>
#include <set>
#include <tuple>

namespace zavex::mathbase {
namespace {

using test::isNear;
using test::PI;
using Generator = RandomGen_LCG<69069u, 5u>;
using Random = RandomBase<Generator>;

constexpr std::uint32_t INVERSE_OF_MULTIPLIER = 2783094533u;
static_assert(INVERSE_OF_MULTIPLIER * 69069u == 1u);

constexpr int DRAWS = 40000;

TEST(RandomGenerator, FollowsItsSequenceFromASeed)
{
    Generator generator(0);
    EXPECT_EQ(generator.mX, 345350u);
    EXPECT_EQ(generator.nextLong(), 2378142675u);
    generator.setSeed(0);
    EXPECT_EQ(generator.nextFloat(), 2378142675.0f / 4294967296.0f);
    generator.setSeed(0);
    EXPECT_EQ(generator.nextDouble(), 2378142675.0 / 4294967296.0);
    EXPECT_EQ(generator.getMaxLong(), 4294967295u);
    generator.mX = (UINT32_MAX - 5u) * INVERSE_OF_MULTIPLIER;
    EXPECT_LT(generator.nextFloat(), 1.0f) << "at its largest state";
    EXPECT_EQ(generator.mX, UINT32_MAX);

    RandomBase<RandomGen_Rand> library(7);
    const Vector3f first = library.uniform3(0.0f, 1.0f);
    library.setSeed(7);
    EXPECT_EQ(library.uniform3(0.0f, 1.0f), first);
    EXPECT_GE(first.getMin(), 0.0f);
    EXPECT_LT(first.getMax(), 1.0f);
    EXPECT_EQ(library.mGen.getMaxLong(), static_cast<std::uint32_t>(RAND_MAX));
}

TEST(Random, WholeNumbersReachBothLimitsAndNothingBeyond)
{
    const std::tuple<int, int, std::size_t> cases[] = {
        {-1,      1,       3   },
        {5,       5,       1   },
        {INT_MIN, INT_MAX, 3000},
        {0,       9,       10  }, // odd and even ones
    };
    for (const auto& [lo, hi, count] : cases) {
        Random random(1);
        std::set<int> found;
        for (int i = 0; i < 3000; ++i)
            found.insert(random.uniform(lo, hi));
        EXPECT_GE(*found.begin(), lo);
        EXPECT_LE(*found.rbegin(), hi);
        EXPECT_EQ(found.size(), count);
    }
    EXPECT_EQ(test::thrownMessage([] { Random(1).uniform(2, 1); }), "lo<=hi");
}

bool isUnit(const Vector3f& v)
{
    return std::abs(v.length() - 1.0f) < 1e-5f;
}

constexpr Vector3f RADII{1, 2, 4};
constexpr Vector3f X{1, 0, 0};
constexpr Vector3f Z{0, 0, 1};
constexpr Box3 BOX({0, 0, 0}, {2, 3, 0.5f});

// The means are those of the textbook densities: a cap of 60 degrees has its centre of gravity at
// (1 + cos) / 2, a hemisphere weighted with the cosine to the power n at (n + 1) / (n + 2). The
// sides of a box share its hits by what is seen of each.
// clang-format off
const struct {
    const char* name;
    std::function<Vector3f(Random&)> draw;
    std::function<bool(const Vector3f&)> isAllowed;
    Vector3f mean;
    float spread = 1.0f; // at least the standard deviation of a component
} DRAWN[] = {
    {"OnSphere", [](auto& r) { return r.randomOnSphere(); }, isUnit, {}},
    {"InSphere", [](auto& r) { return r.randomInSphere(3); },
     [](auto& v) { return v.length() <= 3.00001f; }, {}, 1.5f},
    {"HalfOfASphereIsWithinACubeRootOfAHalf",
     [](auto& r) { return X * (r.randomInSphere(1).length() < 0.793701f ? 1.0f : 0.0f); },
     [](auto&) { return true; }, {0.5f, 0, 0}},
    {"InEllipsoid", [](auto& r) { return r.randomInEllipsoid(RADII); },
     [](auto& v) { return v.multiply(RADII.byOne()).length() <= 1.00001f; }, {}, 2.5f},
    {"OnEllipsoid", [](auto& r) { return r.randomOnEllipsoid(RADII); },
     [](auto& v) { return isUnit(v.multiply(RADII.byOne())); }, {}, 2.5f},
    {"OnAFlatEllipsoidByArea", [](auto& r) { return X * (r.randomOnEllipsoid({2, 2, 0}).length2() / 4); },
     [](auto&) { return true; }, {0.5f, 0, 0}},
    {"SphereThetaLimit", [](auto& r) { return r.randomSphereThetaLimit({0, -5, 0}, PI / 3); },
     [](auto& v) { return isUnit(v) && v.y <= -0.49999f; }, {0, -0.75f, 0}},
    {"Hemisphere", [](auto& r) { return r.randomHemisphere(Z); },
     [](auto& v) { return isUnit(v) && v.z >= 0; }, {0, 0, 0.5f}},
    {"CosineHemisphere", [](auto& r) { return r.randomCosineHemisphere(-Z); },
     [](auto& v) { return isUnit(v) && v.z <= 0; }, {0, 0, -2.0f / 3}},
    {"CosinePowHemisphere", [](auto& r) { return r.randomCosinePowHemisphere(X, 8); },
     [](auto& v) { return isUnit(v) && v.x >= 0; }, {0.9f, 0, 0}},
    {"SphereQuad", [](auto& r) { return r.randomSphereQuad({0, 0}, {PI / 2, PI / 2}); },
     [](auto& v) { return isUnit(v) && v.getMin() >= -1e-6f; }, {0.5f, 0.5f, 0.5f}},
    {"BoxHitStraight", [](auto& r) { return r.randomBoxSurfaceHitFromDir(BOX, {0, 0, -3}); },
     [](auto& v) { return v.z == 0.5f && BOX.isInside(v); }, {1, 1.5f, 0.5f}},
    {"BoxHitOnTwoSides", [](auto& r) { return r.randomBoxSurfaceHitFromDir(BOX, {-1, 1, 0}); },
     [](auto& v) { return (v.x == 2 || v.y == 0) && BOX.isInside(v); }, {1.6f, 0.9f, 0.25f}},
    {"BoxHitOnTwoOthers", [](auto& r) { return r.randomBoxSurfaceHitFromDir(BOX, {0, 6, 1}); },
     [](auto& v) { return (v.y == 0 || v.z == 0) && BOX.isInside(v); }, {1, 0.75f, 0.125f}},
};
// clang-format on

TEST(Random, StaysWhereItBelongsAndCentresWhereItsDensityDoes)
{
    for (const auto& row : DRAWN) {
        SCOPED_TRACE(row.name);
        Random random(42);
        Vector3f sum;
        for (int i = 0; i < DRAWS; ++i) {
            const Vector3f drawn = row.draw(random);
            ASSERT_TRUE(row.isAllowed(drawn)) << drawn.x << ", " << drawn.y << ", " << drawn.z;
            sum += drawn;
        }
        const float fourStandardErrors = 4.0f * row.spread / std::sqrt(static_cast<float>(DRAWS));
        EXPECT_TRUE(isNear(sum * (1.0f / DRAWS), row.mean, fourStandardErrors));
    }
    Vector3f normal;
    Random(9).randomBoxSurfaceHitFromDir(BOX, {0, 2, 0}, normal);
    EXPECT_EQ(normal, Vector3f(0, -1, 0));
}

TEST(Seed, ComesFromTheEnvironmentWhenItIsANumber)
{
    const auto seedWith = [](const char* text) {
        test::clearLog();
        setenv("CADENZA_SEED", text, 1);
        const std::uint32_t seed = initialSeed(77);
        unsetenv("CADENZA_SEED");
        return seed;
    };
    EXPECT_EQ(seedWith("4294967295"), 4294967295u);
    EXPECT_EQ(test::countLogged("log", "CADENZA_SEED"), 0);
    for (const char* bad : {"4294967296", "-1", "12x", ""}) {
        EXPECT_EQ(seedWith(bad), 77u);
        EXPECT_EQ(test::countLogged("log", "CADENZA_SEED"), 1) << bad;
    }
}

} // namespace
} // namespace zavex::mathbase
