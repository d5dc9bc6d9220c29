#include "mathbase/mb_matrix4x4col.h"

#include <cmath>
#include <utility>

namespace zavex::mathbase {

namespace {

// The cosine of 90 degrees as single precision gives it: cameras were modelled with this value.
constexpr float COS_90 = -4.371139e-8f;

// What is to the right of a camera that looks straight up or down.
constexpr Vector3f SIDE_OF_VERTICAL{0.0f, 0.0f, 1.0f};

/** The frame of a camera: to its right, upwards, and along the line of sight. */
struct CameraAxes {
    Vector3f side;
    Vector3f up;
    Vector3f sight;
};

/** `v` at unit length, or `fallback` where it has no direction. */
Vector3f directionOf(const Vector3f& v, const Vector3f& fallback)
{
    const Vector3f unit = v.getNormalized();
    return unit.length2() > 0.5f ? unit : fallback;
}

CameraAxes cameraAxes(const Vector3f& eye, const Vector3f& target)
{
    CameraAxes axes;
    axes.sight = directionOf(target - eye, {0.0f, 0.0f, -1.0f});
    const bool isVertical = axes.sight.x == 0.0f && axes.sight.z == 0.0f;
    const Vector3f upwards =
        isVertical ? Vector3f{-axes.sight.y, 0.0f, 0.0f} : Vector3f{0.0f, 1.0f, 0.0f};
    axes.side = directionOf(axes.sight.cross(upwards), SIDE_OF_VERTICAL);
    axes.up = axes.side.cross(axes.sight);
    return axes;
}

/** A rotation about x by -90 (`sine` -1) or 90 degrees (`sine` 1). */
Matrix4x4Col quarterTurnX(float sine)
{
    Matrix4x4Col turn;
    turn[5] = turn[10] = COS_90;
    turn[6] = sine;
    turn[9] = -sine;
    return turn;
}

} // namespace

void Matrix4x4Col::multiplyFromLeft(const Matrix4x4Col& a)
{
    *this = a.multiply(*this);
}

void Matrix4x4Col::multiplyFromRight(const Matrix4x4Col& a)
{
    *this = multiply(a);
}

Matrix4x4Col Matrix4x4Col::multiply(const Matrix4x4Col& a) const
{
    Matrix4x4Col product;
    for (int column = 0; column < 16; column += 4) {
        for (int row = 0; row < 4; ++row) {
            product[column + row] = mData[row] * a[column] + mData[4 + row] * a[column + 1] +
                                    mData[8 + row] * a[column + 2] +
                                    mData[12 + row] * a[column + 3];
        }
    }
    return product;
}

Vector3f Matrix4x4Col::multiply(const Vector3f& v) const
{
    return multiplyVector(v) + Vector3f{mData[12], mData[13], mData[14]};
}

Vector4f Matrix4x4Col::multiply(const Vector4f& v) const
{
    Vector4f product;
    for (int row = 0; row < 4; ++row) {
        product[row] =
            mData[row] * v.x + mData[4 + row] * v.y + mData[8 + row] * v.z + mData[12 + row] * v.w;
    }
    return product;
}

Vector3f Matrix4x4Col::multiplyVector(const Vector3f& v) const
{
    return {mData[0] * v.x + mData[4] * v.y + mData[8] * v.z,
            mData[1] * v.x + mData[5] * v.y + mData[9] * v.z,
            mData[2] * v.x + mData[6] * v.y + mData[10] * v.z};
}

Vector3f Matrix4x4Col::multiplyVectorWithTransponate(const Vector3f& v) const
{
    return {mData[0] * v.x + mData[1] * v.y + mData[2] * v.z,
            mData[4] * v.x + mData[5] * v.y + mData[6] * v.z,
            mData[8] * v.x + mData[9] * v.y + mData[10] * v.z};
}

void Matrix4x4Col::transponate()
{
    for (int column = 0; column < 4; ++column) {
        for (int row = 0; row < column; ++row)
            std::swap(mData[column * 4 + row], mData[row * 4 + column]);
    }
}

void Matrix4x4Col::setIdentity()
{
    *this = {};
}

void Matrix4x4Col::setZero()
{
    for (float& element : mData)
        element = 0.0f;
}

void Matrix4x4Col::setScale(float scale)
{
    setScale({scale, scale, scale});
}

void Matrix4x4Col::setScale(const Vector3f& scale)
{
    setIdentity();
    mData[0] = scale.x;
    mData[5] = scale.y;
    mData[10] = scale.z;
}

void Matrix4x4Col::setScale(const Vector3f& scale, const Vector3f& center)
{
    setScaleAndShear(scale, center, {});
}

void Matrix4x4Col::setTranslation(const Vector3f& translation)
{
    setTranslation(Vector4f{translation, 1.0f});
}

void Matrix4x4Col::setTranslation(const Vector4f& translation)
{
    setIdentity();
    mData[12] = translation.x;
    mData[13] = translation.y;
    mData[14] = translation.z;
    mData[15] = translation.w;
}

void Matrix4x4Col::setRotX(float angle)
{
    setIdentity();
    mData[5] = mData[10] = std::cos(angle);
    mData[6] = std::sin(angle);
    mData[9] = -mData[6];
}

void Matrix4x4Col::setRotY(float angle)
{
    setIdentity();
    mData[0] = mData[10] = std::cos(angle);
    mData[2] = std::sin(angle);
    mData[8] = -mData[2];
}

void Matrix4x4Col::setRotZ(float angle)
{
    setIdentity();
    mData[0] = mData[5] = std::cos(angle);
    mData[1] = std::sin(angle);
    mData[4] = -mData[1];
}

void Matrix4x4Col::setRot(const Quatf& rotation)
{
    const auto [w, x, y, z] = rotation;
    setIdentity();
    mData[0] = 1.0f - 2.0f * (y * y + z * z);
    mData[1] = 2.0f * (x * y + w * z);
    mData[2] = 2.0f * (x * z - w * y);
    mData[4] = 2.0f * (x * y - w * z);
    mData[5] = 1.0f - 2.0f * (x * x + z * z);
    mData[6] = 2.0f * (y * z + w * x);
    mData[8] = 2.0f * (x * z + w * y);
    mData[9] = 2.0f * (y * z - w * x);
    mData[10] = 1.0f - 2.0f * (x * x + y * y);
}

void Matrix4x4Col::setShear(const Vector3f& shear)
{
    setScaleAndShear({1.0f, 1.0f, 1.0f}, {}, shear);
}

void Matrix4x4Col::setScaleAndShear(const Vector3f& scale, const Vector3f& center,
                                    const Vector3f& shear)
{
    const float shearXY = shear.x * shear.y;
    const float shearXZ = shear.x * shear.z;
    const float shearYZ = shear.y * shear.z;
    setScale(scale);
    mData[4] = scale.y * shearXY;
    mData[8] = scale.z * shearXZ;
    mData[9] = scale.z * shearYZ;
    mData[12] =
        (1.0f - scale.x) * center.x - scale.y * center.y * shearXY - scale.z * center.z * shearXZ;
    mData[13] = (1.0f - scale.y) * center.y - scale.z * center.z * shearYZ;
    mData[14] = (1.0f - scale.z) * center.z;
}

void Matrix4x4Col::buildPRS(const Vector3f& position, const Quatf& rotation, const Vector3f& scale)
{
    setRot(rotation);
    for (int row = 0; row < 3; ++row) {
        mData[row] *= scale.x;
        mData[4 + row] *= scale.y;
        mData[8 + row] *= scale.z;
        mData[12 + row] = position[row];
    }
}

void Matrix4x4Col::buildPRSinverse(const Vector3f& position, const Quatf& rotation,
                                   const Vector3f& scale)
{
    setRot({rotation.w, -rotation.x, -rotation.y, -rotation.z});
    const Vector3f moved = multiplyVector(-position);
    for (int row = 0; row < 3; ++row) {
        mData[row] /= scale[row];
        mData[4 + row] /= scale[row];
        mData[8 + row] /= scale[row];
        mData[12 + row] = moved[row] / scale[row];
    }
}

void Matrix4x4Col::buildBlenderCamera(const Vector3f& position, const Quatf& rotation,
                                      const Vector3f& scale)
{
    buildPRS(position, rotation, scale);
    multiplyFromRight(quarterTurnX(-1.0f));
}

void Matrix4x4Col::buildBlenderCameraInverse(const Vector3f& position, const Quatf& rotation,
                                             const Vector3f& scale)
{
    buildPRSinverse(position, rotation, scale);
    multiplyFromLeft(quarterTurnX(1.0f));
}

void Matrix4x4Col::setProject(float fovY, float aspect, float near, float far)
{
    setProjectInf(fovY, aspect, near);
    mData[10] = -(far + near) / (far - near);
    mData[14] = -2.0f * far * near / (far - near);
}

void Matrix4x4Col::setProjectInf(float fovY, float aspect, float near)
{
    const float top = std::tan(fovY / 2.0f) * near;
    const float bottom = -top;
    const float right = aspect * top;
    const float left = aspect * bottom;

    setZero();
    mData[0] = 2.0f * near / (right - left);
    mData[5] = 2.0f * near / (top - bottom);
    mData[8] = (right + left) / (right - left);
    mData[9] = (top + bottom) / (top - bottom);
    mData[10] = -1.0f;
    mData[11] = -1.0f;
    mData[14] = -2.0f * near;
}

// NOLINTNEXTLINE(readability-function-size): one parameter for each of the six planes
void Matrix4x4Col::setProjectOrtho(float left, float right, float bottom, float top, float near,
                                   float far)
{
    setIdentity();
    mData[0] = 2.0f / (right - left);
    mData[5] = 2.0f / (top - bottom);
    mData[10] = 2.0f / (far - near);
    mData[12] = -(right + left) / (right - left);
    mData[13] = -(top + bottom) / (top - bottom);
    mData[14] = -(far + near) / (far - near);
}

void Matrix4x4Col::setProjectOrtho2D(float left, float right, float bottom, float top)
{
    setProjectOrtho(left, right, bottom, top, -1.0f, 1.0f);
}

void Matrix4x4Col::setCamera(const Vector3f& eye, const Vector3f& target, float roll)
{
    const CameraAxes axes = cameraAxes(eye, target);
    const Vector3f rows[3] = {axes.side, axes.up, -axes.sight};
    setIdentity();
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            mData[column * 4 + row] = rows[row][column];
        mData[12 + row] = -rows[row].dot(eye);
    }

    Matrix4x4Col rolled;
    rolled.setRotZ(-roll);
    multiplyFromLeft(rolled);
}

void Matrix4x4Col::setCameraInv(const Vector3f& eye, const Vector3f& target, float roll)
{
    const CameraAxes axes = cameraAxes(eye, target);
    const Vector3f columns[4] = {axes.side, axes.up, -axes.sight, eye};
    setIdentity();
    for (int column = 0; column < 4; ++column) {
        for (int row = 0; row < 3; ++row)
            mData[column * 4 + row] = columns[column][row];
    }

    Matrix4x4Col rolled;
    rolled.setRotZ(roll);
    multiplyFromRight(rolled);
}

Vector3f Matrix4x4Col::getUnprojectedPoint(const Vector3f& point) const
{
    return {-(point.x + mData[8]) * point.z / mData[0], -(point.y + mData[9]) * point.z / mData[5],
            point.z};
}

Vector3f Matrix4x4Col::getUnprojectedDirection(const Vector3f& point, float near, float far) const
{
    return getUnprojectedPoint({point.x, point.y, -far}) -
           getUnprojectedPoint({point.x, point.y, -near});
}

} // namespace zavex::mathbase
