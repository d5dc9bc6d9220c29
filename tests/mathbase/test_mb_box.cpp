#include "mathbase/mb_box.h"

#include "mathbase/mb_matrix4x4col.h"
#include "near.h"

#include <gtest/gtest.h>

#include <array>

namespace zavex::mathbase {

namespace {

using test::isNear;

constexpr Box2 RECTANGLE{10.0f, 20.0f, 30.0f, 25.0f};
constexpr Box3 CUBE{
    {-1.0f, -1.0f, -1.0f},
    {1.0f,  1.0f,  1.0f }
};

constexpr struct InsideCase {
    const char* name;
    Vector2f point;
    float margin;
    bool expected;
} INSIDE_CASES[] = {
    {"LowerCornerBelongs",        {10.0f, 20.0f}, 0.0f,  true },
    {"UpperCornerBelongs",        {30.0f, 25.0f}, 0.0f,  true },
    {"LeftOfIt",                  {9.9f, 22.0f},  0.0f,  false},
    {"WithinTheMargin",           {8.0f, 27.0f},  2.0f,  true },
    {"NegativeMarginShrinks",     {10.0f, 22.0f}, -1.0f, false},
    {"NothingIsInWhatShrankAway", {20.0f, 22.5f}, -4.0f, false},
};

TEST(BoxInside, CountsItsEdges)
{
    for (const InsideCase& row : INSIDE_CASES) {
        SCOPED_TRACE(row.name);
        const auto& [name, point, margin, expected] = row;
        EXPECT_EQ(RECTANGLE.isInside(point, margin), expected);
        const Box3 solid{
            {10.0f, 20.0f, 0.0f},
            {30.0f, 25.0f, 9.0f}
        };
        EXPECT_EQ(solid.isInside(Vector3f{point.x, point.y, 4.5f}, margin), expected);
    }
}

TEST(Box2, IntersectionOfDisjointBoxesHoldsNothing)
{
    Box2 box = RECTANGLE;
    box.setIntersect({20.0f, 0.0f, 90.0f, 22.0f});
    EXPECT_EQ(box, Box2(20.0f, 20.0f, 30.0f, 22.0f));
    box.setIntersect({40.0f, 0.0f, 90.0f, 22.0f});
    EXPECT_LT(box.getWidth(), 0.0f);
    EXPECT_FALSE(box.isInside({35.0f, 21.0f}));
}

TEST(Box, GrowsAroundPointsAndBoxesAndHoldsThemAfterwards)
{
    const std::array points{
        Vector3f{3.0f,  0.0f, 1.0f},
        Vector3f{-1.0f, 5.0f, 2.0f}
    };
    Box3 box;
    box.setFromPoints(points);
    EXPECT_EQ(box, Box3({-1.0f, 0.0f, 1.0f}, {3.0f, 5.0f, 2.0f}));
    EXPECT_FALSE(box.isInside(CUBE));
    box.setUnion(CUBE);
    EXPECT_TRUE(box.isInside(CUBE));
    box.expand(Vector3f{0.0f, 0.0f, 8.0f});
    EXPECT_EQ(box, Box3({-1.0f, -1.0f, -1.0f}, {3.0f, 5.0f, 8.0f}));

    Box2 flat = RECTANGLE;
    flat.setFromPoints({});
    EXPECT_EQ(flat, Box2());
}

TEST(Box3, DistanceIsThatToTheNearestPointOfIt)
{
    EXPECT_EQ(CUBE.getDistanceSqr({0.5f, 0.0f, 0.0f}), 0.0f);
    EXPECT_EQ(CUBE.getDistanceSqr({4.0f, 0.0f, 0.0f}), 9.0f);
    EXPECT_EQ(CUBE.getDistanceSqr({-3.0f, 3.0f, 3.0f}), 12.0f);
}

constexpr struct RayCase {
    const char* name;
    Vector3f origin;
    Vector3f direction;
    bool hits;
    float enter;
    float leave;
} RAY_CASES[] = {
    {"AgainstAnAxis",        {5.0f, 0.0f, 0.0f},  {-1.0f, 0.0f, 0.0f}, true,  4.0f,  6.0f },
    {"InUnitsOfDirection",   {0.0f, -5.0f, 0.0f}, {0.0f, 2.0f, 0.0f},  true,  2.0f,  3.0f },
    {"Diagonal",             {-3.0f, -3.0f, 0},   {1.0f, 1.0f, 0.0f},  true,  2.0f,  4.0f },
    {"FromInside",           {0.0f, 0.0f, 0.0f},  {0.0f, 0.0f, 1.0f},  true,  0.0f,  1.0f },
    {"BoxBehind",            {5.0f, 0.0f, 0.0f},  {1.0f, 0.0f, 0.0f},  false, -7.0f, -7.0f},
    {"ParallelOutsideASlab", {5.0f, 2.0f, 0.0f},  {-1.0f, 0.0f, 0.0f}, false, -7.0f, -7.0f},
    {"ParallelAlongASide",   {5.0f, 1.0f, 0.0f},  {-1.0f, 0.0f, 0.0f}, true,  4.0f,  6.0f },
    {"PassesACorner",        {-3.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 0.0f},  false, -7.0f, -7.0f},
};

TEST(BoxRay, MeetsTheBoxBetweenEnterAndLeave)
{
    for (const RayCase& row : RAY_CASES) {
        SCOPED_TRACE(row.name);
        float enter = -7.0f;
        float leave = -7.0f;
        EXPECT_EQ(CUBE.getIntersection(row.origin, row.direction, enter, leave), row.hits);
        EXPECT_EQ(enter, row.enter);
        EXPECT_EQ(leave, row.leave);
    }
}

TEST(Box3, TransformedIsTheTightestBoxAroundItsTransformedCorners)
{
    Matrix4x4Col matrix;
    matrix.buildPRS({10.0f, 0.0f, 0.0f}, Quatf(test::PI / 4.0f, {0.0f, 0.0f, 1.0f}),
                    {1.0f, 1.0f, -3.0f});
    Box3 box = CUBE;
    box.setTransformed(box, matrix);
    const float diagonal = std::sqrt(2.0f);
    EXPECT_TRUE(isNear(box.mMin, {10.0f - diagonal, -diagonal, -3.0f}));
    EXPECT_TRUE(isNear(box.mMax, {10.0f + diagonal, diagonal, 3.0f}));
}

} // namespace

} // namespace zavex::mathbase
