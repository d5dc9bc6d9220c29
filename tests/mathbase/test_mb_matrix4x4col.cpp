#include "mathbase/mb_matrix4x4col.h"

#include "near.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <functional>

namespace zavex::mathbase {

namespace {

using test::isNear;
using test::PI;

const Vector3f POSITION{3.0f, -2.0f, 5.0f};
const Vector3f SCALE{2.0f, 0.5f, -4.0f};
const Quatf ROTATION{
    0.9f, {1.0f, 2.0f, -1.0f}
};
constexpr Vector3f ORIGIN{};
constexpr Vector3f X{1.0f, 0.0f, 0.0f};

using Build = std::function<void(Matrix4x4Col&)>;

Matrix4x4Col built(const Build& build)
{
    Matrix4x4Col matrix;
    for (float& element : matrix.mData)
        element = std::nanf("");
    build(matrix);
    return matrix;
}

// clang-format off
const struct PointCase {
    const char* name;
    Build build;
    Vector3f point;
    Vector3f expected;
} POINT_CASES[] = {
    {"ScaleEvenly", [](auto& m) { m.setScale(2.0f); }, {1, 2, 3}, {2, 4, 6}},
    {"Scale", [](auto& m) { m.setScale(SCALE); }, {1, 2, 3}, {2, 1, -12}},
    {"ScaleKeepsItsCenter", [](auto& m) { m.setScale(SCALE, POSITION); }, POSITION, POSITION},
    {"Translation", [](auto& m) { m.setTranslation(POSITION); }, X, {4, -2, 5}},
    {"RotXIsRightHanded", [](auto& m) { m.setRotX(PI / 2); }, {0, 1, 0}, {0, 0, 1}},
    {"RotYTurnsTheOtherWay", [](auto& m) { m.setRotY(PI / 2); }, X, {0, 0, 1}},
    {"RotZIsRightHanded", [](auto& m) { m.setRotZ(PI / 2); }, X, {0, 1, 0}},
    {"RotOfAQuaternionIsRightHandedAboutYToo",
     [](auto& m) { m.setRot(Quatf(PI / 2, {0, 1, 0})); }, X, {0, 0, -1}},
    {"ShearOfX", [](auto& m) { m.setShear({2, 3, 5}); }, {1, 1, 0}, {7, 1, 0}},
    {"ShearOfXAndYByZ", [](auto& m) { m.setShear({2, 3, 5}); }, {0, 0, 1}, {10, 15, 1}},
    {"ScaleAndShearKeepsItsCenter",
     [](auto& m) { m.setScaleAndShear(SCALE, POSITION, {2, 3, 5}); }, POSITION, POSITION},
    {"ScaleAndShearScalesFirst",
     [](auto& m) { m.setScaleAndShear({1, 10, 1}, {}, {2, 3, 5}); }, {0, 1, 0}, {60, 10, 0}},
    {"PrsScalesRotatesThenMoves",
     [](auto& m) { m.buildPRS({100, 0, 0}, Quatf(PI / 2, {0, 0, 1}), {5, 1, 1}); }, X, {100, 5, 0}},
    {"BlenderCameraLooksAlongMinusY",
     [](auto& m) { m.buildBlenderCamera({}, {}, {1, 1, 1}); }, {0, 0, -1}, {0, -1, 0}},
    {"OrthoNearIsMinusOne",
     [](auto& m) { m.setProjectOrtho(0, 8, 6, 0, 1, 3); }, {0, 6, 1}, {-1, -1, -1}},
    {"OrthoFarIsOne",
     [](auto& m) { m.setProjectOrtho(0, 8, 6, 0, 1, 3); }, {8, 0, 3}, {1, 1, 1}},
    {"Ortho2DKeepsZ",
     [](auto& m) { m.setProjectOrtho2D(0, 8, 6, 0); }, {4, 3, 0.5f}, {0, 0, 0.5f}},
    {"CameraSeesItsTargetAhead",
     [](auto& m) { m.setCamera({0, 0, -10}, {0, 0, 0}); }, ORIGIN, {0, 0, -10}},
    {"CameraLooksStraightUp",
     [](auto& m) { m.setCamera({}, {0, 5, 0}); }, {0, 1, 0}, {0, 0, -1}},
    {"CameraLookingStraightUpTakesMinusXForUp",
     [](auto& m) { m.setCamera({}, {0, 5, 0}); }, {-1, 0, 0}, {0, 1, 0}},
    {"CameraRollTurnsThePictureBack",
     [](auto& m) { m.setCamera({0, 0, 10}, {0, 0, 0}, PI / 2); }, X, {0, -1, -10}},
};
// clang-format on

TEST(MatrixBuilder, OverwritesAllElementsAndMovesAPoint)
{
    for (const PointCase& row : POINT_CASES) {
        SCOPED_TRACE(row.name);
        const Matrix4x4Col matrix = built(row.build);
        for (const float element : matrix.mData)
            EXPECT_FALSE(std::isnan(element));
        EXPECT_TRUE(isNear(matrix.multiply(row.point), row.expected));
    }
}

// clang-format off
const struct InverseCase {
    const char* name;
    Build build;
    Build inverse;
} INVERSE_CASES[] = {
    {"Prs",
     [](auto& m) { m.buildPRS(POSITION, ROTATION, SCALE); },
     [](auto& m) { m.buildPRSinverse(POSITION, ROTATION, SCALE); }},
    {"BlenderCamera",
     [](auto& m) { m.buildBlenderCamera(POSITION, ROTATION, SCALE); },
     [](auto& m) { m.buildBlenderCameraInverse(POSITION, ROTATION, SCALE); }},
    {"Camera",
     [](auto& m) { m.setCamera(POSITION, {1, 1, 1}, 0.7f); },
     [](auto& m) { m.setCameraInv(POSITION, {1, 1, 1}, 0.7f); }},
    {"CameraStraightUp",
     [](auto& m) { m.setCamera(ORIGIN, {0, 5, 0}, -2.0f); },
     [](auto& m) { m.setCameraInv(ORIGIN, {0, 5, 0}, -2.0f); }},
    {"CameraStraightDown",
     [](auto& m) { m.setCamera(POSITION, {3, -9, 5}); },
     [](auto& m) { m.setCameraInv(POSITION, {3, -9, 5}); }},
    {"CameraAllButStraightDown",
     [](auto& m) { m.setCamera(ORIGIN, {1e-20f, -9, 0}); },
     [](auto& m) { m.setCameraInv(ORIGIN, {1e-20f, -9, 0}); }},
    {"CameraAtItsTarget",
     [](auto& m) { m.setCamera(POSITION, POSITION, 0.7f); },
     [](auto& m) { m.setCameraInv(POSITION, POSITION, 0.7f); }},
};
// clang-format on

TEST(MatrixInverse, MultipliesToTheIdentityOnBothSides)
{
    for (const InverseCase& row : INVERSE_CASES) {
        SCOPED_TRACE(row.name);
        const Matrix4x4Col matrix = built(row.build);
        const Matrix4x4Col inverse = built(row.inverse);
        EXPECT_TRUE(isNear(matrix * inverse, {}));
        EXPECT_TRUE(isNear(inverse * matrix, {}));
    }
}

TEST(Matrix, CameraAtItsTargetIsLoggedAndLooksAlongMinusZ)
{
    test::clearLog();
    const Matrix4x4Col camera = built([](auto& m) { m.setCamera(X, X); });
    EXPECT_TRUE(isNear(camera.multiply(Vector3f(1, 2, -3)), {0, 2, -3}));
    EXPECT_EQ(test::countLogged("log", "length>0.0000000001f"), 1);
}

TEST(Matrix, ProductsKeepTheirOrder)
{
    const Matrix4x4Col move = built([](auto& m) { m.setTranslation({1, 0, 0}); });
    const Matrix4x4Col scale = built([](auto& m) { m.setScale(2.0f); });

    Matrix4x4Col right = move;
    right.multiplyFromRight(scale);
    EXPECT_TRUE(isNear(right.multiply(X), {3, 0, 0}));
    EXPECT_EQ(right, move * scale);

    Matrix4x4Col left = move;
    left.multiplyFromLeft(scale);
    EXPECT_TRUE(isNear(left.multiply(X), {4, 0, 0}));

    left = move;
    left *= left;
    EXPECT_TRUE(isNear(left.multiply(X), {3, 0, 0}));
}

TEST(Matrix, DirectionsAreNotMovedAndTransposeUndoesARotation)
{
    Matrix4x4Col matrix = built([](auto& m) { m.buildPRS(POSITION, ROTATION, {1, 1, 1}); });
    const Vector3f turned = matrix.multiplyVector(X);
    EXPECT_TRUE(isNear(turned, ROTATION * X));
    EXPECT_TRUE(isNear(matrix.multiplyVectorWithTransponate(turned), X));

    matrix.transponate();
    EXPECT_TRUE(isNear(matrix.multiplyVector(turned), X));
    EXPECT_EQ(matrix[3], POSITION.x);
    EXPECT_EQ(matrix[12], 0.0f);
}

Vector3f onDevice(const Matrix4x4Col& matrix, const Vector3f& point)
{
    const Vector4f clip = matrix.multiply(Vector4f(point));
    return Vector3f{clip.x, clip.y, clip.z} * (1.0f / clip.w);
}

TEST(Matrix, PerspectiveMapsItsPlanes)
{
    const Matrix4x4Col project = built([](auto& m) { m.setProject(PI / 2, 2.0f, 1.0f, 9.0f); });
    EXPECT_TRUE(isNear(onDevice(project, {2.0f, 1.0f, -1.0f}), {1.0f, 1.0f, -1.0f}));
    EXPECT_TRUE(isNear(onDevice(project, {-18.0f, -9.0f, -9.0f}), {-1.0f, -1.0f, 1.0f}));

    const Matrix4x4Col endless = built([](auto& m) { m.setProjectInf(PI / 2, 2.0f, 1.0f); });
    EXPECT_TRUE(isNear(onDevice(endless, {2.0f, 1.0f, -1.0f}), {1.0f, 1.0f, -1.0f}));
    EXPECT_TRUE(isNear(onDevice(endless, {0.0f, 0.0f, -1e6f}), {0.0f, 0.0f, 1.0f}));
}

TEST(Matrix, PerspectiveUnprojectsWhatItProjects)
{
    const Matrix4x4Col project = built([](auto& m) { m.setProject(PI / 2, 2.0f, 1.0f, 9.0f); });
    const Vector3f point{0.7f, -0.4f, -3.0f};
    const Vector3f seen = onDevice(project, point);
    EXPECT_TRUE(isNear(project.getUnprojectedPoint({seen.x, seen.y, point.z}), point));
    EXPECT_TRUE(isNear(project.getUnprojectedDirection({1.0f, 1.0f, 0.0f}, 1.0f, 9.0f),
                       {16.0f, 8.0f, -8.0f}));
}

} // namespace

} // namespace zavex::mathbase
