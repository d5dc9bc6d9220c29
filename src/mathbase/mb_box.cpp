#include "mathbase/mb_box.h"

#include "mathbase/mb_matrix4x4col.h"

#include <limits>

namespace zavex::mathbase {

namespace {

template <typename Box, typename Vector>
Box boxAround(std::span<const Vector> points)
{
    if (points.empty())
        return {};
    Box box{points.front(), points.front()};
    for (const Vector& point : points)
        box.setUnion(point);
    return box;
}

} // namespace

void Box2::setFromPoints(std::span<const Vector2f> points)
{
    *this = boxAround<Box2>(points);
}

void Box3::setFromPoints(std::span<const Vector3f> points)
{
    *this = boxAround<Box3>(points);
}

void Box3::setTransformed(const Box3& box, const Matrix4x4Col& matrix)
{
    const Vector3f translation{matrix[12], matrix[13], matrix[14]};
    Box3 result{translation, translation};
    for (int column = 0; column < 3; ++column) {
        const Vector3f axis{matrix[column * 4], matrix[column * 4 + 1], matrix[column * 4 + 2]};
        const Vector3f one = axis * box.mMin[column];
        const Vector3f other = axis * box.mMax[column];
        result.mMin += one.min(other);
        result.mMax += one.max(other);
    }
    *this = result;
}

bool Box3::getIntersection(const Vector3f& origin, const Vector3f& direction, float& enter,
                           float& leave) const
{
    float nearest = 0.0f;
    float farthest = std::numeric_limits<float>::infinity();
    for (int axis = 0; axis < 3; ++axis) {
        const float toMin = mMin[axis] - origin[axis];
        const float toMax = mMax[axis] - origin[axis];
        if (direction[axis] == 0.0f) {
            if (toMin > 0.0f || toMax < 0.0f)
                return false;
            continue;
        }
        const float one = toMin / direction[axis];
        const float other = toMax / direction[axis];
        nearest = std::max(nearest, std::min(one, other));
        farthest = std::min(farthest, std::max(one, other));
    }
    if (nearest > farthest)
        return false;
    enter = nearest;
    leave = farthest;
    return true;
}

} // namespace zavex::mathbase
