#include "mathbase/mb_vector2.h"
#include "mathbase/mb_vector3.h"
#include "mathbase/mb_vector4.h"

#include "near.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <tuple>

namespace zavex::mathbase {

namespace {

using test::isNear;

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

TEST(Vector, TooShortIsNotNormalisedAndStaysAsItIs)
{
    for (const float size : {0.0f, 1e-20f, 1e-10f}) {
        test::clearLog();
        EXPECT_EQ(Vector2f(0.0f, size).getNormalized(), Vector2f(0.0f, size));
        EXPECT_EQ(Vector3f(size, 0.0f, 0.0f).getNormalized(), Vector3f(size, 0.0f, 0.0f));
        EXPECT_EQ(Vector4f(size, 0.0f, 0.0f, 0.0f).getNormalized(),
                  Vector4f(size, 0.0f, 0.0f, 0.0f));
        EXPECT_EQ(test::countLogged("log", "length>0.0000000001f"), 3);
    }
}

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

TEST(Vector3, AxesAreThoseOfTheFirstSmallestAndGreatestMagnitude)
{
    const std::tuple<Vector3f, int, int> cases[] = {
        {{2.0f, -3.0f, 1.0f}, 2, 1},
        {{0.5f, 0.0f, -9.0f}, 1, 2},
        {{1.0f, -1.0f, 1.0f}, 0, 0},
        {{4.0f, 2.0f, 2.0f},  1, 0},
    };
    for (const auto& [vector, minor, major] : cases) {
        EXPECT_EQ(vector.getMinorAxis(), minor) << test::text(vector, 3);
        EXPECT_EQ(vector.getMajorAxis(), major) << test::text(vector, 3);
    }
}

TEST(Vector4, TakesAPointAndIgnoresItsFourthComponentInItsProduct)
{
    Vector4f vector{9.0f, 9.0f, 9.0f, 9.0f};
    vector = Vector3f{1.0f, 2.0f, 3.0f};
    EXPECT_EQ(vector, Vector4f(1.0f, 2.0f, 3.0f, 1.0f));
    EXPECT_EQ(vector.dot(Vector3f(1.0f, 10.0f, 100.0f)), 321.0f);
}

} // namespace

} // namespace zavex::mathbase
