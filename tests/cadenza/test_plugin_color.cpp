#include "cadenza/cad_plugin_color.h"
#include "cadenza/plugin_body.h"
#include "vellum/vel_container.h"

#include <gtest/gtest.h>

#include <string>

namespace zavex::cadenza {
namespace {

using mathbase::Vector3f;

constexpr float WIDTH = 100.0f; // of an effect of ten seconds
const std::string RED_TO_BLUE = R"(<key time="0.2" r="1" g="0" b="0"/>)"
                                R"(<key time="0.8" r="0" g="0" b="1"/>)";

struct ColorCase {
    const char* name;
    std::string body;
    float time; // seconds
    Vector3f expected;

    friend void PrintTo(const ColorCase& color, std::ostream* out) { *out << color.name; }
};

class ColorValue : public testing::TestWithParam<ColorCase> {};

TEST_P(ColorValue, SpansTheEffect)
{
    Color color;
    test::loadBody(color, GetParam().body);
    color.setupControl(WIDTH);

    const Vector3f value = color.get(GetParam().time);
    EXPECT_NEAR(value.x, GetParam().expected.x, 1e-6f);
    EXPECT_NEAR(value.y, GetParam().expected.y, 1e-6f);
    EXPECT_NEAR(value.z, GetParam().expected.z, 1e-6f);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ColorValue,
    testing::Values(
        ColorCase{
            "NoKeysAreBlack", "", 5.0f, {0, 0, 0}
},
        ColorCase{"BeforeTheFirstKey", RED_TO_BLUE, 0.5f, {1, 0, 0}},
        ColorCase{"BetweenTheKeys", RED_TO_BLUE, 5.0f, {0.5f, 0, 0.5f}},
        ColorCase{"AfterTheLastKey", RED_TO_BLUE, 9.5f, {0, 0, 1}},
        ColorCase{"IsNotClamped", R"(<key time="0" r="1.5" g="-1" b="2"/>)", 1.0f, {1.5f, -1, 2}},
        ColorCase{"MissingChannelsAreZero", R"(<key g="1"/>)", 1.0f, {0, 1, 0}}),
    [](const auto& each) { return std::string{each.param.name}; });

TEST(Color, RoundTripsSortedByTimeAndAddsToWhatIsThere)
{
    Color color;
    EXPECT_EQ(test::savedBody(color), "");
    test::loadBody(color, R"(<key time="0.8" r="0" g="0" b="1"/>)"
                          R"(<key time="0.2" r="1" g="0" b="0"/>)");
    EXPECT_EQ(test::savedBody(color), RED_TO_BLUE);

    test::loadBody(color, R"(<key time="0.5" r="0.0196078" g="1e+06" b="0"/>)");
    EXPECT_EQ(test::savedBody(color), R"(<key time="0.2" r="1" g="0" b="0"/>)"
                                      R"(<key time="0.5" r="0.0196078" g="1e+06" b="0"/>)"
                                      R"(<key time="0.8" r="0" g="0" b="1"/>)");
}

/** Counts the observers of a control by their answers. */
class CountedButton final : public vellum::Container {
public:
    void setCallback(vellum::Callback* callback) override
    {
        ++observers;
        vellum::Container::setCallback(callback);
    }

    int observers = 0;
};

TEST(Color, ObservesThePickerOnceHoweverOftenTheBarChanges)
{
    vellum::Container root;
    auto* button = new CountedButton; // owned by root
    button->setName("picker_ok");
    root.addControl(button);
    Color color;
    root.addControl(&color);

    color.setupControl(50.0f);
    color.setupControl(60.0f);

    EXPECT_EQ(button->observers, 1);
    button->sendAction(vellum::ACTION_BUTTON_PRESSED);
}

} // namespace
} // namespace zavex::cadenza
