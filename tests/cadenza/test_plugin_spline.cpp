#include "cadenza/cad_plugin_spline.h"
#include "cadenza/plugin_body.h"
#include "vellum/probe.h"

#include <gtest/gtest.h>

#include <string>

namespace zavex::cadenza {
namespace {

constexpr float WIDTH = 40.0f; // of an effect of four seconds

std::string ramp(const std::string& attributes)
{
    return attributes + "<key time=\"0\" value=\"0\"/><key time=\"1\" value=\"1\"/>";
}

const std::string LINEAR = R"(<attributes type="linear" before="constant" after="constant"/>)";

// clang-format off
const struct ValueCase {
    const char* name;
    std::string body;
    float time; // seconds
    float expected;
} VALUE_CASES[] = {
    {"ClimbsOnWithAdd", ramp(R"(<attributes type="linear" before="constant" after="add"/>)"), 6.0f, 1.5f},
    {"RepeatsBefore", ramp(R"(<attributes type="linear" before="repeat" after="constant"/>)"), -1.0f, 0.75f},
    {"ModesAreSmoothAndConstantByDefault", ramp(""), 6.0f, 1.0f},
    {"UnknownTypeIsSquare", ramp(R"(<attributes type="Smooth"/>)"), 3.9f, 0.0f},
    {"UnknownExtrapolationIsConstant", ramp(R"(<attributes type="linear" before="Add" after="REPEAT"/>)"), 7.0f, 1.0f},
    {"LastAttributesWin", ramp(LINEAR + R"(<attributes type="square" before="add" after="add"/>)"), 2.0f, 0.0f},
    {"MissingNumbersAreZero", LINEAR + R"(<key value="2"/><key time="1"/>)", 1.0f, 1.5f},
    {"KeysMayComeInAnyOrder", LINEAR + R"(<key time="1" value="1"/><key time="0" value="0"/>)", 1.0f, 0.25f},
};
// clang-format on

TEST(SplineValue, SpansTheEffect)
{
    for (const ValueCase& row : VALUE_CASES) {
        SCOPED_TRACE(row.name);
        Spline spline;
        test::loadBody(spline, row.body);
        spline.setupControl(WIDTH);

        EXPECT_FLOAT_EQ(spline.get(row.time), row.expected);
    }
}

TEST(Spline, LoadedKeysKeepTheTangentsOfTheModesBefore)
{
    Spline constant;
    Spline repeating;
    const std::string keys = R"(<key time="0" value="0"/><key time="0.25" value="1"/>)"
                             R"(<key time="1" value="0"/>)";
    test::loadBody(constant, keys);
    test::loadBody(repeating,
                   R"(<attributes type="smooth" before="repeat" after="repeat"/>)" + keys);
    constant.setupControl(WIDTH);
    repeating.setupControl(WIDTH);

    EXPECT_FLOAT_EQ(repeating.get(0.5f), constant.get(0.5f));
}

TEST(Spline, TheLaneHasItsNameOverTheCurve)
{
    vellum::test::Screen screen;
    Spline spline;
    spline.mName = "zoom";
    spline.setParent(&screen);
    spline.draw({10, 20, 110, 70}, {0, 0, 400, 300}, {30, 20, 110, 60});
    ASSERT_EQ(screen.render.texts.size(), 2u);
    EXPECT_EQ(screen.render.texts[1].text, "zoom");
    EXPECT_EQ(screen.render.texts[1].position, mathbase::Vector2f(10, 65));
    EXPECT_EQ(screen.render.texts[1].align, 0);
}

TEST(Spline, WithoutWidthShowsItsStart)
{
    Spline spline;
    test::loadBody(spline, ramp(LINEAR));
    spline.setupControl(0.0f);

    EXPECT_EQ(spline.get(3.0f), 0.0f);
}

} // namespace
} // namespace zavex::cadenza
