#pragma once

#include "mathbase/mb_vector2.h"
#include "mathbase/mb_vector3.h"

#include <span>

namespace zavex::mathbase {

struct Matrix4x4Col;

/**
 * An axis-aligned rectangle from `mMin`, the corner of the smaller coordinates, to `mMax`.
 *
 * Both corners belong to it. A default box is the single point (0, 0). A box with `mMin` above
 * `mMax` on an axis is empty: nothing is inside.
 */
struct Box2 {
    constexpr Box2() = default;
    constexpr Box2(const Vector2f& minimum, const Vector2f& maximum) : mMin(minimum), mMax(maximum)
    {}
    constexpr Box2(float minX, float minY, float maxX, float maxY)
        : mMin(minX, minY), mMax(maxX, maxY)
    {}

    constexpr bool operator==(const Box2&) const = default;

    /** This box moved by `offset` or by its opposite. */
    constexpr Box2 operator+(const Vector2f& offset) const
    {
        return {mMin + offset, mMax + offset};
    }
    constexpr Box2 operator-(const Vector2f& offset) const
    {
        return {mMin - offset, mMax - offset};
    }

    /** `mMin` for index 0, `mMax` for index 1. */
    constexpr Vector2f& operator[](int index) { return index == 0 ? mMin : mMax; }
    constexpr const Vector2f& operator[](int index) const { return index == 0 ? mMin : mMax; }

    /** Moves every side outwards by `margin`; a negative margin shrinks. */
    constexpr void expand(float margin)
    {
        mMin -= {margin, margin};
        mMax += {margin, margin};
    }

    /** Grows as little as needed to hold `point` or `box` as well. */
    constexpr void setUnion(const Vector2f& point) { setUnion(Box2{point, point}); }
    constexpr void setUnion(const Box2& box)
    {
        mMin.mini(box.mMin);
        mMax.maxi(box.mMax);
    }

    /** Shrinks to what `box` covers as well; boxes that share no point leave an empty box. */
    constexpr void setIntersect(const Box2& box)
    {
        mMin.maxi(box.mMin);
        mMax.mini(box.mMax);
    }

    /** Becomes the smallest box around `points`; the point (0, 0) when there are none. */
    void setFromPoints(std::span<const Vector2f> points);

    constexpr Vector2f getCenter() const { return (mMin + mMax) * 0.5f; }
    constexpr Vector2f getHalfSize() const { return getSize() * 0.5f; }
    constexpr Vector2f getSize() const { return mMax - mMin; }
    constexpr float getWidth() const { return mMax.x - mMin.x; }
    constexpr float getHeight() const { return mMax.y - mMin.y; }
    constexpr float getArea() const { return getSize().product(); }

    constexpr bool isInside(const Vector2f& point) const { return isInside(Box2{point, point}); }

    /** Whether `point` is inside this box expanded by `margin`. */
    constexpr bool isInside(const Vector2f& point, float margin) const
    {
        Box2 grown = *this;
        grown.expand(margin);
        return grown.isInside(point);
    }

    /** Whether the whole of `box` is inside this one. */
    constexpr bool isInside(const Box2& box) const
    {
        return box.mMin.x >= mMin.x && box.mMax.x <= mMax.x && box.mMin.y >= mMin.y &&
               box.mMax.y <= mMax.y;
    }

    Vector2f mMin;
    Vector2f mMax;
};

/** An axis-aligned box in space; corners and emptiness as in `Box2`. */
struct Box3 {
    constexpr Box3() = default;
    constexpr Box3(const Vector3f& minimum, const Vector3f& maximum) : mMin(minimum), mMax(maximum)
    {}

    constexpr bool operator==(const Box3&) const = default;

    /** `mMin` for index 0, `mMax` for index 1. */
    constexpr Vector3f& operator[](int index) { return index == 0 ? mMin : mMax; }
    constexpr const Vector3f& operator[](int index) const { return index == 0 ? mMin : mMax; }

    /** Moves every side outwards by `margin`; a negative margin shrinks. */
    constexpr void expand(float margin)
    {
        mMin -= {margin, margin, margin};
        mMax += {margin, margin, margin};
    }

    /** Grows as little as needed to hold `point`; the same as `setUnion`. */
    constexpr void expand(const Vector3f& point) { setUnion(point); }

    /** Grows as little as needed to hold `point` or `box` as well. */
    constexpr void setUnion(const Vector3f& point) { setUnion(Box3{point, point}); }
    constexpr void setUnion(const Box3& box)
    {
        mMin.mini(box.mMin);
        mMax.maxi(box.mMax);
    }

    /** Becomes the smallest box around `points`; the point (0, 0, 0) when there are none. */
    void setFromPoints(std::span<const Vector3f> points);

    /**
     * Becomes the smallest axis-aligned box around `box` transformed by `matrix` (Arvo's method).
     * The matrix must be affine; `box` may be this one.
     */
    void setTransformed(const Box3& box, const Matrix4x4Col& matrix);

    constexpr Vector3f getCenter() const { return (mMin + mMax) * 0.5f; }
    constexpr Vector3f getHalfSize() const { return getSize() * 0.5f; }
    constexpr Vector3f getSize() const { return mMax - mMin; }

    /** The area of the six sides. */
    constexpr float getArea() const
    {
        const Vector3f size = getSize();
        return 2.0f * (size.x * size.y + size.y * size.z + size.z * size.x);
    }

    constexpr float getVolume() const { return getSize().product(); }

    constexpr bool isInside(const Vector3f& point) const { return isInside(Box3{point, point}); }

    /** Whether `point` is inside this box expanded by `margin`. */
    constexpr bool isInside(const Vector3f& point, float margin) const
    {
        Box3 grown = *this;
        grown.expand(margin);
        return grown.isInside(point);
    }

    /** Whether the whole of `box` is inside this one. */
    constexpr bool isInside(const Box3& box) const
    {
        return box.mMin.x >= mMin.x && box.mMax.x <= mMax.x && box.mMin.y >= mMin.y &&
               box.mMax.y <= mMax.y && box.mMin.z >= mMin.z && box.mMax.z <= mMax.z;
    }

    /** The squared distance from `point` to the nearest point of the box; 0 inside. */
    constexpr float getDistanceSqr(const Vector3f& point) const
    {
        return (point - point.max(mMin).min(mMax)).length2();
    }

    /**
     * Intersects the ray `origin` + t * `direction`, t >= 0, with the box (slab method). False,
     * with `enter` and `leave` untouched, when it misses.
     *
     * @param enter  t where the ray enters; 0 when `origin` is inside.
     * @param leave  t where it leaves.
     */
    bool getIntersection(const Vector3f& origin, const Vector3f& direction, float& enter,
                         float& leave) const;

    Vector3f mMin;
    Vector3f mMax;
};

} // namespace zavex::mathbase
