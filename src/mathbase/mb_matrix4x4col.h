#pragma once

#include "mathbase/mb_quat.h"
#include "mathbase/mb_vector2.h"
#include "mathbase/mb_vector3.h"
#include "mathbase/mb_vector4.h"

namespace zavex::mathbase {

/**
 * A 4x4 matrix for column vectors, stored column by column as OpenGL takes it: the element in row
 * r and column c is `mData[c * 4 + r]`, and elements 12, 13 and 14 hold the translation.
 *
 * Angles are in radians. Every builder (`set...`, `build...`) overwrites all 16 elements.
 */
struct Matrix4x4Col {
    constexpr float& operator[](int index) { return mData[index]; }
    constexpr float operator[](int index) const { return mData[index]; }
    constexpr bool operator==(const Matrix4x4Col&) const = default;

    /** Products with the matrix `a`, which may be this one: a * this, and this * a. */
    void multiplyFromLeft(const Matrix4x4Col& a);
    void multiplyFromRight(const Matrix4x4Col& a);

    /** The product this * a. */
    Matrix4x4Col multiply(const Matrix4x4Col& a) const;
    Matrix4x4Col operator*(const Matrix4x4Col& a) const { return multiply(a); }
    Matrix4x4Col& operator*=(const Matrix4x4Col& a) { return *this = multiply(a); }

    /** The point `v` transformed, without the fourth row: there is no perspective division. */
    Vector3f multiply(const Vector3f& v) const;

    Vector4f multiply(const Vector4f& v) const;

    /** The direction `v` transformed by the upper 3x3, or by the upper 3x3 transposed. */
    Vector3f multiplyVector(const Vector3f& v) const;
    Vector3f multiplyVectorWithTransponate(const Vector3f& v) const;

    /** Transposes in place. */
    void transponate();

    void setIdentity();
    void setZero();
    void setScale(float scale);
    void setScale(const Vector3f& scale);

    /** Scales about the point `center`. */
    void setScale(const Vector3f& scale, const Vector3f& center);

    void setTranslation(const Vector3f& translation);

    /** Also sets element 15, to the translation's w. */
    void setTranslation(const Vector4f& translation);

    /**
     * Rotations about an axis. `setRotX` and `setRotZ` are right-handed; `setRotY` turns the other
     * way: a quarter turn takes x to +z.
     */
    void setRotX(float angle);
    void setRotY(float angle);
    void setRotZ(float angle);

    /** The rotation of `rotation`, which is used as it is and must be of unit length. */
    void setRot(const Quatf& rotation);

    /** Adds shear.x * (shear.y * y + shear.z * z) to x and shear.y * shear.z * z to y. */
    void setShear(const Vector3f& shear);

    /** Scales, then shears as `setShear` does, both about the point `center`. */
    void setScaleAndShear(const Vector3f& scale, const Vector3f& center, const Vector3f& shear);

    /** Scales first, then rotates, then moves. `rotation` must be of unit length. */
    void buildPRS(const Vector3f& position, const Quatf& rotation, const Vector3f& scale);

    /** The exact inverse of `buildPRS`; no component of `scale` may be 0. */
    void buildPRSinverse(const Vector3f& position, const Quatf& rotation, const Vector3f& scale);

    /**
     * The camera of a modelling program whose z axis points up: `buildPRS` followed on the right by
     * a rotation of -90 degrees about x; and the inverse of that.
     */
    void buildBlenderCamera(const Vector3f& position, const Quatf& rotation, const Vector3f& scale);
    void buildBlenderCameraInverse(const Vector3f& position, const Quatf& rotation,
                                   const Vector3f& scale);

    /**
     * A symmetric perspective projection.
     *
     * @param fovY    Vertical field of view in radians.
     * @param aspect  Width divided by height.
     * @param near    Distances of the clipping planes; both positive.
     */
    void setProject(float fovY, float aspect, float near, float far);

    /** As `setProject`, with the far plane at infinity. */
    void setProjectInf(float fovY, float aspect, float near);

    /** A parallel projection; z = `near` maps to -1 and z = `far` to +1, without a change of sign.
     */
    void setProjectOrtho(float left, float right, float bottom, float top, float near, float far);

    /** A parallel projection for flat drawing: `setProjectOrtho` with z in -1..1 kept as it is. */
    void setProjectOrtho2D(float left, float right, float bottom, float top);

    /**
     * A viewing matrix: looks from `eye` towards `target`, y up, rolled about the line of sight by
     * `roll`. Looking straight up or down, x takes the place of y. Two points that are 1e-10 apart
     * or less are logged, and it looks along -z.
     */
    void setCamera(const Vector3f& eye, const Vector3f& target, float roll = 0.0f);

    /** The inverse of `setCamera`, built directly. */
    void setCameraInv(const Vector3f& eye, const Vector3f& target, float roll = 0.0f);

    /**
     * On a perspective matrix: the point in view space that is seen at `point.x`, `point.y` in
     * device coordinates (-1..1) and has the depth `point.z` (negative in front of the camera).
     */
    Vector3f getUnprojectedPoint(const Vector3f& point) const;

    /**
     * On a perspective matrix: from the near to the far plane in view space, along what is seen at
     * `point.x`, `point.y` in device coordinates. Not normalised; `point.z` does not count.
     */
    Vector3f getUnprojectedDirection(const Vector3f& point, float near, float far) const;

    /** The elements, column by column; the identity until something else is built. */
    float mData[16] = {1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f,
                       0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f};
};

} // namespace zavex::mathbase
