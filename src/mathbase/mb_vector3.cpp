#include "mathbase/mb_vector3.h"

#include "mathbase/mb_unit_length.h"

namespace zavex::mathbase {

template <>
void Vector3T<float>::normalize()
{
    const long double exactX = x;
    const long double exactY = y;
    const long double exactZ = z;
    const long double length = std::sqrt(exactX * exactX + exactY * exactY + exactZ * exactZ);
    *this *= toUnitLength(length);
}

} // namespace zavex::mathbase
