#include "mathbase/mb_vector2.h"
#include "mathbase/mb_vector3.h"
#include "mathbase/mb_vector4.h"

#include "near.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

namespace zavex::mathbase {

namespace {

using test::isNear;

TEST(Vector, IsHandedOutAsItsComponentsInOrder)
{
    const Vector4f four{1.0f, 2.0f, 3.0f, 4.0f};
    EXPECT_TRUE(isNear(Vector2f{1.0f, 2.0f}, four, 2, 0.0f));
    EXPECT_TRUE(isNear(Vector3f{1.0f, 2.0f, 3.0f}, four, 3, 0.0f));
    const float byIndex[] = {four[0], four[1], four[2], four[3]};
    EXPECT_TRUE(isNear(byIndex, four, 4, 0.0f));
    const Vector3f three{1.0f, 2.0f, 3.0f};
    EXPECT_EQ(Vector3f(three[0], three(1), three[2]), three);
}

TEST(Vector, NormalisesWhatSinglePrecisionWouldSquareToInfinityOrZero)
{
    for (const float size : {1e30f, 1e-9f}) {
        EXPECT_TRUE(isNear(Vector3f(size, 0.0f, -size).getNormalized(),
                           {std::sqrt(0.5f), 0.0f, -std::sqrt(0.5f)}))
            << size;
        EXPECT_NEAR(Vector2f(0.0f, size).getNormalized().y, 1.0f, 1e-6f) << size;
        EXPECT_NEAR(Vector4f(0.0f, 0.0f, 0.0f, size).getNormalized().w, 1.0f, 1e-6f) << size;
    }
}

class ShortVector : public testing::TestWithParam<float> {};

TEST_P(ShortVector, IsNotNormalisedAndStaysAsItIs)
{
    const float size = GetParam();
    test::clearLog();
    EXPECT_EQ(Vector2f(0.0f, size).getNormalized(), Vector2f(0.0f, size));
    EXPECT_EQ(Vector3f(size, 0.0f, 0.0f).getNormalized(), Vector3f(size, 0.0f, 0.0f));
    EXPECT_EQ(Vector4f(size, 0.0f, 0.0f, 0.0f).getNormalized(), Vector4f(size, 0.0f, 0.0f, 0.0f));
    EXPECT_EQ(test::countLogged("log", "length>0.0000000001f"), 3);
}

INSTANTIATE_TEST_SUITE_P(Lengths, ShortVector, testing::Values(0.0f, 1e-20f, 1e-10f));

TEST(Vector3, CrossProductsDifferByHandedness)
{
    const Vector3f x{1.0f, 0.0f, 0.0f};
    const Vector3f y{0.0f, 1.0f, 0.0f};
    const Vector3f z{0.0f, 0.0f, 1.0f};
    EXPECT_TRUE(isNear(x.cross(y), z));
    EXPECT_TRUE(isNear(y.crossRHS(z), x));
    EXPECT_TRUE(isNear(x.crossLHS(y), -z));
}

TEST(Vector3, ReflectsAtThePlaneOfANormal)
{
    const Vector3f incoming{1.0f, -2.0f, 3.0f};
    EXPECT_TRUE(isNear(incoming.reflection({0.0f, 1.0f, 0.0f}), {1.0f, 2.0f, 3.0f}));
}

struct AxisCase {
    const char* name;
    Vector3f vector;
    int minor;
    int major;

    friend void PrintTo(const AxisCase& axis, std::ostream* out) { *out << axis.name; }
};

constexpr AxisCase AXIS_CASES[] = {
    {"ByMagnitude",        {2.0f, -3.0f, 1.0f}, 2, 1},
    {"LastIsMajor",        {0.5f, 0.0f, -9.0f}, 1, 2},
    {"FirstOfEqualOnes",   {1.0f, -1.0f, 1.0f}, 0, 0},
    {"FirstOfTheTwoEqual", {4.0f, 2.0f, 2.0f},  1, 0},
};

class Vector3Axis : public testing::TestWithParam<AxisCase> {};

TEST_P(Vector3Axis, IsThatOfTheSmallestOrGreatestComponent)
{
    EXPECT_EQ(GetParam().vector.getMinorAxis(), GetParam().minor);
    EXPECT_EQ(GetParam().vector.getMajorAxis(), GetParam().major);
}

INSTANTIATE_TEST_SUITE_P(Cases, Vector3Axis, testing::ValuesIn(AXIS_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST(Vector4, TakesAPointAndIgnoresItsFourthComponentInItsProduct)
{
    Vector4f vector{9.0f, 9.0f, 9.0f, 9.0f};
    vector = Vector3f{1.0f, 2.0f, 3.0f};
    EXPECT_EQ(vector, Vector4f(1.0f, 2.0f, 3.0f, 1.0f));
    EXPECT_EQ(vector.dot(Vector3f(1.0f, 10.0f, 100.0f)), 321.0f);
}

} // namespace

} // namespace zavex::mathbase
