#include "cadenza/cad_plugin_trigger.h"
#include "cadenza/plugin_body.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zavex::cadenza {
namespace {

struct Update {
    float time;          // seconds
    std::uint32_t fired; // counted by this update
};

struct FiringCase {
    const char* name;
    std::string body;
    std::vector<Update> updates;

    friend void PrintTo(const FiringCase& firing, std::ostream* out) { *out << firing.name; }
};

const std::string THREE = R"(<action start="1" delay="0.5" repeat="3"/>)";

class TriggerFiring : public testing::TestWithParam<FiringCase> {};

TEST_P(TriggerFiring, CountsWhatWasPassed)
{
    Trigger trigger;
    test::loadBody(trigger, GetParam().body);

    for (const Update& update : GetParam().updates) {
        trigger.update(update.time);
        EXPECT_EQ(trigger.get(update.time), update.fired) << "at " << update.time;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, TriggerFiring,
    testing::Values(
        FiringCase{
            "OneByOne",
            THREE,
            {{0.9f, 0}, {1.0f, 0}, {1.01f, 1}, {1.6f, 1}, {2.2f, 1}, {3.0f, 0}, {9.0f, 0}}
},
        FiringCase{"AllInOneStep", THREE, {{0.9f, 0}, {2.2f, 3}, {9.0f, 0}}},
        FiringCase{"AStepMayPassMoreThanThereAre", THREE, {{3.2f, 5}, {9.0f, 0}}},
        FiringCase{"ASecondUpdateAtTheSameTime", THREE, {{1.2f, 1}, {1.2f, 0}}},
        FiringCase{"StepBackStartsOver", THREE, {{1.9f, 2}, {1.2f, 0}, {1.3f, 1}, {1.6f, 1}}},
        FiringCase{"ActionsAddUp",
                   R"(<action start="1"/><action start="1.5"/><action start="3"/>)",
                   {{1.9f, 2}, {3.5f, 1}}},
        FiringCase{"MissingDelayAndRepeatAreOne", R"(<action start="1"/>)", {{1.5f, 1}, {2.5f, 0}}},
        FiringCase{"EmptyDelayAndRepeatAreOne",
                   R"(<action start="1" delay="" repeat=""/>)",
                   {{1.5f, 1}, {2.5f, 0}}},
        FiringCase{"MissingStartIsZero", R"(<action delay="1" repeat="2"/>)", {{0.5f, 1}}},
        FiringCase{"RepeatIsHexadecimal",
                   R"(<action start="0" delay="1" repeat="0x10"/>)",
                   {{15.5f, 16}, {16.5f, 0}}},
        FiringCase{"RepeatIsOctal",
                   R"(<action start="0" delay="1" repeat="010"/>)",
                   {{7.5f, 8}, {8.5f, 0}}},
        FiringCase{"NegativeRepeatIsNone", R"(<action start="0" repeat="-1"/>)", {{5.0f, 0}}},
        FiringCase{"NoDelayFiresAllAtOnce",
                   R"(<action start="1" delay="0" repeat="4"/>)",
                   {{1.0f, 0}, {1.1f, 4}, {2.0f, 0}}},
        FiringCase{"TinyDelayStaysInRange",
                   R"(<action start="0" delay="1e-30" repeat="4"/>)",
                   {{50.0f, 1000000001u}, {51.0f, 0}}},
        FiringCase{"EmptyBodyFiresOnlyAfterAStepBack", "", {{5.0f, 0}, {1.0f, 0}, {1.5f, 2}}}),
    [](const auto& each) { return std::string{each.param.name}; });

TEST(Trigger, AnswersZeroForATimeBeforeTheUpdate)
{
    Trigger trigger;
    test::loadBody(trigger, THREE);
    trigger.update(1.2f);

    EXPECT_EQ(trigger.get(1.1f), 0u);
    EXPECT_EQ(trigger.get(1.3f), 1u);
}

} // namespace
} // namespace zavex::cadenza
