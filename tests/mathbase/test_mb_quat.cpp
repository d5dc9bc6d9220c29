#include "mathbase/mb_quat.h"

#include "near.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <tuple>

namespace zavex::mathbase {

namespace {

using test::isNear;
using test::PI;

constexpr Vector3f X{1.0f, 0.0f, 0.0f};
constexpr Vector3f Y{0.0f, 1.0f, 0.0f};
constexpr Vector3f Z{0.0f, 0.0f, 1.0f};

testing::AssertionResult isSame(const Quatf& actual, const Quatf& expected)
{
    const float components[4] = {actual.w, actual.x, actual.y, actual.z};
    const float others[4] = {expected.w, expected.x, expected.y, expected.z};
    return isNear(components, others, 4, test::ROUNDING);
}

// Followed by hand: the last letter's turn comes first. About x: y to z; about y: z to x; about z:
// x to y.
constexpr struct OrderCase {
    const char* name;
    RotationOrder order;
    Vector3f turnedX; // where quarter turns about x, y and z take the x, y and z axis
    Vector3f turnedY;
    Vector3f turnedZ;
    RotationOrder inverse;
} ORDER_CASES[] = {
    {"XYZ", RotationOrder::XYZ, Z,  -Y, X,  RotationOrder::ZYX},
    {"XZY", RotationOrder::XZY, Y,  -X, Z,  RotationOrder::YZX},
    {"YXZ", RotationOrder::YXZ, X,  Z,  -Y, RotationOrder::ZXY},
    {"ZXY", RotationOrder::ZXY, -X, Z,  Y,  RotationOrder::YXZ},
    {"YZX", RotationOrder::YZX, Y,  X,  -Z, RotationOrder::XZY},
    {"ZYX", RotationOrder::ZYX, -Z, Y,  X,  RotationOrder::XYZ},
};

TEST(EulerOrder, MultipliesTheTurnsAsItsLettersStand)
{
    for (const OrderCase& row : ORDER_CASES) {
        SCOPED_TRACE(row.name);
        const Quatf turn(Euler(PI / 2, PI / 2, PI / 2, row.order));
        EXPECT_TRUE(isNear(turn * X, row.turnedX));
        EXPECT_TRUE(isNear(turn * Y, row.turnedY));
        EXPECT_TRUE(isNear(turn * Z, row.turnedZ));
    }
}

TEST(EulerOrder, IsUndoneByItsInverseWithOppositeAngles)
{
    for (const OrderCase& row : ORDER_CASES) {
        SCOPED_TRACE(row.name);
        EXPECT_TRUE(row.order.getInverse() == row.inverse);
        const Quatf turn(Euler(0.3f, -1.1f, 2.0f, row.order));
        const Quatf back(Euler(-0.3f, 1.1f, -2.0f, row.inverse));
        EXPECT_TRUE(isSame(turn * back, {}));
    }
}

TEST(Quat, KeepsItsRotationForAnOrderThatIsNone)
{
    test::clearLog();
    for (const int order : {-1, 6}) {
        Quatf turn(1.0f, X);
        turn.setEuler(Euler(1.0f, 2.0f, 3.0f, RotationOrder(order)));
        EXPECT_EQ(turn, Quatf(1.0f, X)) << order;
    }
    EXPECT_EQ(test::countLogged("log", "order.value>=0 && order.value<=5"), 2);
}

constexpr Vector3f DIRECTIONS[] = {
    X,
    Y,
    -X,
    {3.0f,  -2.0f, 5.0f    },
    {-3.0f, 2.0f,  -5.0f   },
    {-3.0f, 2.0f,  -5.0001f}, // 1e-5 radians from it
    {-1.0f, 1e-4f, 0.0f    },
    {-1.0f, 2e-6f, -1e-6f  },
    {-1.0f, 1e-9f, 0.0f    },
};

TEST(Quat, TurnsOneDirectionOntoAnother)
{
    for (const Vector3f& from : DIRECTIONS) {
        for (const Vector3f& to : DIRECTIONS) {
            const Quatf turn(from, to);
            EXPECT_TRUE(isNear(turn * from.getNormalized(), to.getNormalized()));
            EXPECT_NEAR(turn.length(), 1.0f, 1e-6f);
        }
    }
}

TEST(Quat, TurnsNothingByWhatHasNoDirection)
{
    constexpr Vector3f none;
    for (const Quatf& turn : {Quatf(X, none), Quatf(none, X), Quatf(none, none), Quatf(2.0f, none)})
        EXPECT_EQ(turn, Quatf());
}

TEST(Quat, GivesItsAngleAndAxisBack)
{
    const std::tuple<Quatf, float, Vector3f> cases[] = {
        {Quatf(1.0f,      {0.0f, 0.0f, 9.0f}), 1.0f,      Z },
        {Quatf(-1.0f,     Y),                  1.0f,      -Y},
        {Quatf(1.5f * PI, Y),                  1.5f * PI, Y },
        {Quatf(0.0f,      Z),                  0.0f,      X },
    };
    for (const auto& [turn, expectedAngle, expectedAxis] : cases) {
        float angle = 0.0f;
        Vector3f axis;
        turn.getAngleAxis(angle, axis);
        EXPECT_NEAR(angle, expectedAngle, 1e-5f);
        EXPECT_TRUE(isNear(axis, expectedAxis));
    }
}

TEST(Quat, InverseUndoesAlsoWhatIsNotOfUnitLength)
{
    const Quatf quat{1.0f, -2.0f, 3.0f, 0.5f};
    EXPECT_TRUE(isSame(quat * quat.getInverse(), {}));
    Quatf unit = quat;
    unit.normalize();
    EXPECT_NEAR(unit.length2(), 1.0f, 1e-6f);
    EXPECT_TRUE(isSame(unit * quat.length(), quat));

    Quatf none{0.0f, 0.0f, 0.0f, 0.0f};
    none.normalize();
    EXPECT_EQ(none.getInverse(), Quatf(0.0f, 0.0f, 0.0f, 0.0f));
}

} // namespace

} // namespace zavex::mathbase
