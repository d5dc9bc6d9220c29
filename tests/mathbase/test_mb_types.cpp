// Vectors, boxes, quaternions and matrices.

#include "mathbase/mb_box.h"
#include "mathbase/mb_matrix4x4col.h"
#include "mathbase/mb_quat.h"
#include "mathbase/mb_vector4.h"

#include "near.h"
#include "support/log_capture.h"

#include <array>
#include <functional>
#include <limits>
#include <tuple>

namespace zavex::mathbase {
namespace {

using test::isNear;
using test::PI;

constexpr Vector3f NONE;
constexpr Vector3f X{1, 0, 0};
constexpr Vector3f Y{0, 1, 0};
constexpr Vector3f Z{0, 0, 1};

TEST(Vector, IsNormalisedHoweverLongUnlessItIsTooShort)
{
    const float diagonal = std::sqrt(0.5f);
    for (const float size : {1e30f, 1e-9f}) {
        SCOPED_TRACE(size);
        EXPECT_TRUE(isNear(Vector3f(size, 0, -size).getNormalized(), {diagonal, 0, -diagonal}));
        EXPECT_TRUE(isNear(Vector2f(0, size).getNormalized(), {0, 1}, 1e-6f));
        EXPECT_TRUE(isNear(Vector4f(0, 0, 0, size).getNormalized(), {0, 0, 0, 1}, 1e-6f));
    }
    for (const float size : {0.0f, 1e-20f, 1e-10f}) {
        test::clearLog();
        EXPECT_EQ(Vector2f(0, size).getNormalized(), Vector2f(0, size));
        EXPECT_EQ(Vector3f(size, 0, 0).getNormalized(), Vector3f(size, 0, 0));
        EXPECT_EQ(Vector4f(size, 0, 0, 0).getNormalized(), Vector4f(size, 0, 0, 0));
        EXPECT_EQ(test::countLogged("log", "length>0.0000000001f"), 3);
    }
}

TEST(Vector, HasProductsAReflectionAndAxes)
{
    EXPECT_EQ(X.cross(Y), Z);
    EXPECT_EQ(Y.crossRHS(Z), X);
    EXPECT_EQ(X.crossLHS(Y), -Z);
    EXPECT_EQ(Vector3f(1, -2, 3).reflection(Y), Vector3f(1, 2, 3));
    Vector4f point{9, 9, 9, 9};
    point = Vector3f{1, 2, 3};
    EXPECT_EQ(point, Vector4f(1, 2, 3, 1));
    EXPECT_EQ(point.dot(Vector3f(1, 10, 100)), 321.0f);
    const std::tuple<Vector3f, int, int> axes[] = {
        {{2, -3, 1},    2, 1},
        {{0.5f, 0, -9}, 1, 2},
        {{1, -1, 1},    0, 0},
        {{4, 2, 2},     1, 0},
    };
    for (const auto& [vector, minor, major] : axes) {
        EXPECT_EQ(vector.getMinorAxis(), minor) << vector.x;
        EXPECT_EQ(vector.getMajorAxis(), major) << vector.x;
    }
}

constexpr Box2 RECTANGLE{10, 20, 30, 25};
constexpr Box3 CUBE({-1, -1, -1}, {1, 1, 1});

TEST(Box, CountsItsEdgesAsInside)
{
    const std::tuple<const char*, Vector2f, float, bool> rows[] = {
        {"LowerCornerBelongs",        {10, 20},    0,  true },
        {"UpperCornerBelongs",        {30, 25},    0,  true },
        {"LeftOfIt",                  {9.9f, 22},  0,  false},
        {"WithinTheMargin",           {8, 27},     2,  true },
        {"NegativeMarginShrinks",     {10, 22},    -1, false},
        {"NothingIsInWhatShrankAway", {20, 22.5f}, -4, false},
    };
    const Box3 solid({10, 20, 0}, {30, 25, 9});
    for (const auto& [name, point, margin, expected] : rows) {
        EXPECT_EQ(RECTANGLE.isInside(point, margin), expected) << name;
        EXPECT_EQ(solid.isInside(Vector3f{point.x, point.y, 4.5f}, margin), expected) << name;
    }
    EXPECT_FALSE(solid.isInside({20, 22, 9.1f}));
}

TEST(Box, GrowsShrinksAndIsTransformed)
{
    const std::array points{Vector3f(3, 0, 1), Vector3f(-1, 5, 2)};
    Box3 box;
    box.setFromPoints(points);
    EXPECT_EQ(box, Box3({-1, 0, 1}, {3, 5, 2}));
    EXPECT_FALSE(box.isInside(CUBE));
    box.setUnion(CUBE);
    EXPECT_TRUE(box.isInside(CUBE));
    box.expand(Vector3f{0, 0, 8});
    EXPECT_EQ(box, Box3({-1, -1, -1}, {3, 5, 8}));
    EXPECT_EQ(CUBE.getDistanceSqr({0.5f, 0, 0}), 0.0f);
    EXPECT_EQ(CUBE.getDistanceSqr({4, 0, 0}), 9.0f);
    EXPECT_EQ(CUBE.getDistanceSqr({-3, 3, 3}), 12.0f);

    Box2 flat = RECTANGLE;
    flat.setIntersect({20, 0, 90, 22});
    EXPECT_EQ(flat, Box2(20, 20, 30, 22));
    flat.setIntersect({40, 0, 90, 22}); // apart from it
    EXPECT_LT(flat.getWidth(), 0.0f);
    EXPECT_FALSE(flat.isInside({35, 21}));
    flat.setFromPoints({});
    EXPECT_EQ(flat, Box2());

    Matrix4x4Col matrix;
    matrix.buildPRS({10, 0, 0}, Quatf(PI / 4, Z), {1, 1, -3});
    box.setTransformed(CUBE, matrix);
    const float diagonal = std::sqrt(2.0f);
    EXPECT_TRUE(isNear(box, {
                                {10 - diagonal, -diagonal, -3},
                                {10 + diagonal, diagonal,  3 }
    }));
}

TEST(Box, IsMetByARayBetweenEnterAndLeave)
{
    constexpr float KEPT = -7;
    const struct {
        const char* name;
        Vector3f origin, direction;
        float enter = KEPT, leave = KEPT; // kept by a ray that misses
    } rows[] = {
        {"AgainstAnAxis",      {5, 0, 0},                   {-1, 0, 0},                                              4, 6},
        {"InUnitsOfDirection",                   {0, -5, 0},                                              {0, 2, 0},                                                                                  2, 3},
        {"Diagonal",           {-3, -3, 0},{1, 1, 0},2, 4},
        {"FromInside",           {0, 0, 0},                 {0, 0, 1},                                                                        0, 1},
        {"ParallelAlongASide",                   {5, 1, 0},                                              {-1, 0, 0},                                                                                          4, 6},
        {"ParallelOutsideASlab",           {5, 2, 0},                     {-1, 0, 0}   },
        {"BoxBehind", {5, 0, 0}, {1, 0, 0}},
        {"PassesACorner",                   {-3, 0, 0},                                              {1, 1, 0}                                                                               },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        float enter = KEPT;
        float leave = KEPT;
        EXPECT_EQ(CUBE.getIntersection(row.origin, row.direction, enter, leave), row.enter != KEPT);
        EXPECT_EQ(enter, row.enter);
        EXPECT_EQ(leave, row.leave);
    }
}

TEST(Quat, MultipliesTheTurnsAsTheLettersOfTheOrderStand)
{
    // Followed by hand: the last letter's turn comes first. About x: y to z; about y: z to x; about
    // z: x to y. Then where quarter turns about all three take the x, y and z axis.
    const std::tuple<RotationOrder, Vector3f, Vector3f, Vector3f, RotationOrder> rows[] = {
        {RotationOrder::XYZ, Z,  -Y, X,  RotationOrder::ZYX},
        {RotationOrder::XZY, Y,  -X, Z,  RotationOrder::YZX},
        {RotationOrder::YXZ, X,  Z,  -Y, RotationOrder::ZXY},
        {RotationOrder::ZXY, -X, Z,  Y,  RotationOrder::YXZ},
        {RotationOrder::YZX, Y,  X,  -Z, RotationOrder::XZY},
        {RotationOrder::ZYX, -Z, Y,  X,  RotationOrder::XYZ},
    };
    for (const auto& [order, turnedX, turnedY, turnedZ, inverse] : rows) {
        SCOPED_TRACE(order.asInt());
        const Quatf turn(Euler(PI / 2, PI / 2, PI / 2, order));
        EXPECT_TRUE(isNear(turn * X, turnedX));
        EXPECT_TRUE(isNear(turn * Y, turnedY));
        EXPECT_TRUE(isNear(turn * Z, turnedZ));
        EXPECT_TRUE(order.getInverse() == inverse);
        const Quatf there(Euler(0.3f, -1.1f, 2.0f, order));
        EXPECT_TRUE(isNear(there * Quatf(Euler(-0.3f, 1.1f, -2.0f, inverse)), {}));
    }
    test::clearLog();
    for (const int order : {-1, 6}) {
        Quatf turn(1.0f, X);
        turn.setEuler(Euler(1.0f, 2.0f, 3.0f, RotationOrder(order)));
        EXPECT_EQ(turn, Quatf(1.0f, X)) << order;
    }
    EXPECT_EQ(test::countLogged("log", "order.value>=0 && order.value<=5"), 2);
}

// The sixth is 1e-5 radians from the fifth.
constexpr Vector3f DIRECTIONS[] = {X,
                                   Y,
                                   -X,
                                   Vector3f(3, -2, 5),
                                   Vector3f(-3, 2, -5),
                                   Vector3f(-3, 2, -5.0001f),
                                   Vector3f(-1, 1e-4f, 0),
                                   Vector3f(-1, 2e-6f, -1e-6f),
                                   Vector3f(-1, 1e-9f, 0)};

TEST(Quat, TurnsOneDirectionOntoAnotherButNothingByWhatHasNone)
{
    for (const Vector3f& from : DIRECTIONS) {
        for (const Vector3f& to : DIRECTIONS) {
            const Quatf turn(from, to);
            EXPECT_TRUE(isNear(turn * from.getNormalized(), to.getNormalized()));
            EXPECT_NEAR(turn.length(), 1.0f, 1e-6f);
        }
    }
    for (const Quatf& turn : {Quatf(X, NONE), Quatf(NONE, X), Quatf(NONE, NONE), Quatf(2, NONE)})
        EXPECT_EQ(turn, Quatf());
}

TEST(Quat, GivesItsAngleAxisAndInverseBack)
{
    const std::tuple<Quatf, float, Vector3f> rows[] = {
        {Quatf(1,         {0, 0, 9}), 1,         Z },
        {Quatf(-1,        Y),         1,         -Y},
        {Quatf(1.5f * PI, Y),         1.5f * PI, Y },
        {Quatf(0,         Z),         0,         X },
    };
    for (const auto& [turn, expectedAngle, expectedAxis] : rows) {
        float angle = 0.0f;
        Vector3f axis;
        turn.getAngleAxis(angle, axis);
        EXPECT_NEAR(angle, expectedAngle, 1e-5f);
        EXPECT_TRUE(isNear(axis, expectedAxis));
    }

    const Quatf quat{1, -2, 3, 0.5f};
    EXPECT_TRUE(isNear(quat * quat.getInverse(), {}));
    Quatf unit = quat;
    unit.normalize();
    EXPECT_NEAR(unit.length2(), 1.0f, 1e-6f);
    EXPECT_TRUE(isNear(unit * quat.length(), quat));
    test::clearLog();
    Quatf none{0, 0, 0, 0};
    none.normalize();
    EXPECT_EQ(none.getInverse(), Quatf(0, 0, 0, 0));
    EXPECT_EQ(test::countLogged("log", "length2>0"), 1);
}

const Vector3f POSITION{3, -2, 5};
const Vector3f SCALE{2, 0.5f, -4};
const Quatf ROTATION(0.9f, {1, 2, -1});

template <typename Build>
Matrix4x4Col built(Build build)
{
    Matrix4x4Col matrix;
    std::ranges::fill(matrix.mData, std::numeric_limits<float>::quiet_NaN());
    build(matrix);
    return matrix;
}

// clang-format off
const struct {
    const char* name;
    std::function<void(Matrix4x4Col&)> build;
    Vector3f point, expected;
} MOVED_POINTS[] = {
    {"ScaleEvenly", [](auto& m) { m.setScale(2); }, {1, 2, 3}, {2, 4, 6}},
    {"Scale", [](auto& m) { m.setScale(SCALE); }, {1, 2, 3}, {2, 1, -12}},
    {"ScaleKeepsItsCenter", [](auto& m) { m.setScale(SCALE, POSITION); }, POSITION, POSITION},
    {"Translation", [](auto& m) { m.setTranslation(POSITION); }, X, {4, -2, 5}},
    {"RotXIsRightHanded", [](auto& m) { m.setRotX(PI / 2); }, Y, Z},
    {"RotYTurnsTheOtherWay", [](auto& m) { m.setRotY(PI / 2); }, X, Z},
    {"RotZIsRightHanded", [](auto& m) { m.setRotZ(PI / 2); }, X, Y},
    {"QuaternionIsRightHandedAboutY", [](auto& m) { m.setRot(Quatf(PI / 2, Y)); }, X, -Z},
    {"ShearOfX", [](auto& m) { m.setShear({2, 3, 5}); }, {1, 1, 0}, {7, 1, 0}},
    {"ShearOfXAndYByZ", [](auto& m) { m.setShear({2, 3, 5}); }, Z, {10, 15, 1}},
    {"ScaleAndShearKeepsItsCenter",
     [](auto& m) { m.setScaleAndShear(SCALE, POSITION, {2, 3, 5}); }, POSITION, POSITION},
    {"ScaleAndShearScalesFirst",
     [](auto& m) { m.setScaleAndShear({1, 10, 1}, {}, {2, 3, 5}); }, Y, {60, 10, 0}},
    {"PrsScalesRotatesThenMoves",
     [](auto& m) { m.buildPRS({100, 0, 0}, Quatf(PI / 2, Z), {5, 1, 1}); }, X, {100, 5, 0}},
    {"BlenderCameraLooksAlongMinusY",
     [](auto& m) { m.buildBlenderCamera({}, {}, {1, 1, 1}); }, -Z, -Y},
    {"OrthoNear", [](auto& m) { m.setProjectOrtho(0, 8, 6, 0, 1, 3); }, {0, 6, 1}, {-1, -1, -1}},
    {"OrthoFar", [](auto& m) { m.setProjectOrtho(0, 8, 6, 0, 1, 3); }, {8, 0, 3}, {1, 1, 1}},
    {"Ortho2DKeepsZ", [](auto& m) { m.setProjectOrtho2D(0, 8, 6, 0); }, {4, 3, 0.5f}, {0, 0, 0.5f}},
    {"CameraSeesItsTarget", [](auto& m) { m.setCamera({0, 0, -10}, NONE); }, NONE, {0, 0, -10}},
    {"CameraLooksStraightUp", [](auto& m) { m.setCamera({}, {0, 5, 0}); }, Y, -Z},
    {"CameraLookingUpTakesMinusXForUp", [](auto& m) { m.setCamera({}, {0, 5, 0}); }, -X, Y},
    {"CameraRollTurnsThePictureBack",
     [](auto& m) { m.setCamera({0, 0, 10}, NONE, PI / 2); }, X, {0, -1, -10}},
};
// clang-format on

TEST(Matrix, IsBuiltWholeAndMovesAPoint)
{
    for (const auto& row : MOVED_POINTS) {
        SCOPED_TRACE(row.name);
        const Matrix4x4Col matrix = built(row.build);
        EXPECT_TRUE(
            std::ranges::none_of(matrix.mData, [](float each) { return std::isnan(each); }));
        EXPECT_TRUE(isNear(matrix.multiply(row.point), row.expected));
    }
}

TEST(Matrix, IsTheIdentityWithItsInverseOnEitherSide)
{
    const auto expectInverse = [](auto build, auto buildInverse) {
        const Matrix4x4Col matrix = built(build);
        const Matrix4x4Col inverse = built(buildInverse);
        EXPECT_TRUE(isNear(matrix * inverse, {}));
        EXPECT_TRUE(isNear(inverse * matrix, {}));
    };
    expectInverse([](auto& m) { m.buildPRS(POSITION, ROTATION, SCALE); },
                  [](auto& m) { m.buildPRSinverse(POSITION, ROTATION, SCALE); });
    expectInverse([](auto& m) { m.buildBlenderCamera(POSITION, ROTATION, SCALE); },
                  [](auto& m) { m.buildBlenderCameraInverse(POSITION, ROTATION, SCALE); });
    const std::tuple<const char*, Vector3f, Vector3f, float> cameras[] = {
        {"Aslant",             POSITION, {1, 1, 1},       0.7f},
        {"StraightUp",         NONE,     {0, 5, 0},       -2  },
        {"StraightDown",       POSITION, {3, -9, 5},      0   },
        {"AllButStraightDown", NONE,     {1e-20f, -9, 0}, 0   },
        {"AtItsTarget",        POSITION, POSITION,        0.7f},
    };
    for (const auto& [name, eye, target, roll] : cameras) {
        SCOPED_TRACE(name);
        expectInverse([&](auto& m) { m.setCamera(eye, target, roll); },
                      [&](auto& m) { m.setCameraInv(eye, target, roll); });
    }
    test::clearLog();
    const Matrix4x4Col camera = built([](auto& m) { m.setCamera(X, X); });
    EXPECT_TRUE(isNear(camera.multiply(Vector3f(1, 2, -3)), {0, 2, -3})) << "along -z";
    EXPECT_EQ(test::countLogged("log", "length>0.0000000001f"), 1);
}

TEST(Matrix, ProductsKeepTheirOrderAndTransposingUndoesARotation)
{
    const Matrix4x4Col move = built([](auto& m) { m.setTranslation(X); });
    const Matrix4x4Col scale = built([](auto& m) { m.setScale(2); });
    Matrix4x4Col right = move;
    right.multiplyFromRight(scale);
    EXPECT_EQ(right.multiply(X), X * 3);
    EXPECT_EQ(right, move * scale);
    Matrix4x4Col left = move;
    left.multiplyFromLeft(scale);
    EXPECT_EQ(left.multiply(X), X * 4);
    left = move;
    left *= left;
    EXPECT_EQ(left.multiply(X), X * 3);

    Matrix4x4Col matrix = built([](auto& m) { m.buildPRS(POSITION, ROTATION, {1, 1, 1}); });
    const Vector3f turned = matrix.multiplyVector(X);
    EXPECT_TRUE(isNear(turned, ROTATION * X));
    EXPECT_TRUE(isNear(matrix.multiplyVectorWithTransponate(turned), X));
    matrix.transponate();
    EXPECT_TRUE(isNear(matrix.multiplyVector(turned), X));
    EXPECT_EQ(matrix[3], POSITION.x);
    EXPECT_EQ(matrix[12], 0.0f);
}

TEST(Matrix, PerspectiveMapsItsPlanesAndUnprojectsWhatItProjects)
{
    const auto onDevice = [](const Matrix4x4Col& matrix, const Vector3f& point) {
        const Vector4f clip = matrix.multiply(Vector4f(point));
        return Vector3f{clip.x, clip.y, clip.z} * (1.0f / clip.w);
    };
    const Matrix4x4Col project = built([](auto& m) { m.setProject(PI / 2, 2, 1, 9); });
    const Matrix4x4Col endless = built([](auto& m) { m.setProjectInf(PI / 2, 2, 1); });
    EXPECT_TRUE(isNear(onDevice(project, {2, 1, -1}), {1, 1, -1}));
    EXPECT_TRUE(isNear(onDevice(project, {-18, -9, -9}), {-1, -1, 1}));
    EXPECT_TRUE(isNear(onDevice(endless, {2, 1, -1}), {1, 1, -1}));
    EXPECT_TRUE(isNear(onDevice(endless, {0, 0, -1e6f}), Z));

    const Vector3f point{0.7f, -0.4f, -3};
    const Vector3f seen = onDevice(project, point);
    EXPECT_TRUE(isNear(project.getUnprojectedPoint({seen.x, seen.y, point.z}), point));
    EXPECT_TRUE(isNear(project.getUnprojectedDirection({1, 1, 0}, 1, 9), {16, 8, -8}));
}

} // namespace
} // namespace zavex::mathbase
