#include "cadenza/cad_effect.h"
#include "cadenza/probe_effect.h"
#include "cadenza/scratch.h"
#include "mathbase/near.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace zavex::cadenza {
namespace {

using mathbase::Vector3f;
using test::ProbeEffect;
using test::readText;
using test::thrownMessage;
using test::writeText;

constexpr const char* SCRIPT = "script/probe.it.xml";

const std::string FULL = readText(CADENZA_TEST_SOURCE_DIR "/full.xml");

class EffectScript : public testing::Test {
protected:
    EffectScript()
    {
        std::filesystem::create_directory("script");
        effect.setIdentity("probe", "it");
        effect.setSpan(0.0f, 10.0f);
        test::clearLog();
    }

    void load(const std::string& script)
    {
        writeText(SCRIPT, script);
        effect.load(nullptr);
    }

    /** Into an effect of four seconds. @param body  What the plugin's element holds. */
    static void loadPlugin(ProbeEffect& loaded, const std::string& name, const std::string& body)
    {
        writeText(SCRIPT, R"(<effect><time end="4"/><plugin name=")" + name + "\">" + body +
                              "</plugin></effect>");
        loaded.setIdentity("probe", "it");
        loaded.load(nullptr);
    }

    test::ScratchFolder folder;
    ProbeEffect effect;
};

TEST_F(EffectScript, IsSavedAsItWasLoaded)
{
    load(FULL);
    effect.setupControl();
    effect.update(3.0f);
    effect.save();

    EXPECT_EQ(readText(SCRIPT), FULL);
    EXPECT_TRUE(effect.getInactive());
    EXPECT_EQ(test::countLogged("log", "effect::load: filename: script/probe.it.xml\n"), 1);
    EXPECT_EQ(test::countLogged("log", "effect::save: filename: script/probe.it.xml\n"), 1);
}

TEST_F(EffectScript, TellsThePluginsHowLongItLastsBeforeThereIsABar)
{
    load(R"(<effect><plugin name="curve"><attributes type="linear"/>)"
         R"(<key time="0" value="0"/><key time="1" value="1"/></plugin></effect>)");
    EXPECT_FLOAT_EQ(effect.curve.get(5.0f), 0.5f);
    load(R"(<effect><time start="2" end="6"/></effect>)");
    EXPECT_FLOAT_EQ(effect.curve.get(3.0f), 0.75f);
    effect.setSpan(4.0f, 24.0f);
    EXPECT_FLOAT_EQ(effect.curve.get(5.0f), 0.25f);
}

/** What a run makes of a script that it loads and saves. */
std::string savedAgain(const std::string& script)
{
    writeText(SCRIPT, script);
    ProbeEffect loaded;
    loaded.setIdentity("probe", "it");
    loaded.load(nullptr);
    loaded.save();
    return readText(SCRIPT);
}

TEST_F(EffectScript, ThatIsMissingChangesNothingAndIsMadeBySaving)
{
    effect.load(nullptr);
    EXPECT_EQ(effect.getStart(), 0.0f);
    EXPECT_EQ(effect.getEnd(), 10.0f);
    EXPECT_FALSE(effect.getInactive());

    effect.setSpan(0.0f, 12.3456789f);
    effect.save();
    const std::string saved = readText(SCRIPT);
    for (const char* part : {"<option inactive=\"0\" locked=\"0\"/>", "end=\"12.3457\"",
                             "<attributes type=\"smooth\" before=\"constant\" after=\"constant\"/>",
                             "\t<plugin type=\"trigger\" name=\"beat\"/>\n"})
        EXPECT_NE(saved.find(part), std::string::npos) << saved;

    effect.setIdentity("probe", "unread");
    effect.save();
    EXPECT_EQ(readText("script/probe.unread.xml"), saved) << "was not loaded";
}

// clang-format off
constexpr struct SpanCase {
    const char* name;
    const char* script;
    float start; // seconds
    float end;   // seconds
    bool inactive;
    bool wasInactive = false;
} SPAN_CASES[] = {
    {"MissingEndIsZero",           R"(<effect><time start="3"/></effect>)", 3, 0, false},
    {"NoTimeKeepsTheSpan",         R"(<effect><option inactive="1"/></effect>)", 0, 10, true},
    {"FirstTimeCounts",            R"(<effect><time start="1" end="2"/><time end="9"/></effect>)", 1, 2, false},
    {"AnyNumberButZeroIsInactive", R"(<effect><option inactive="2"/></effect>)", 0, 10, true},
    {"HexadecimalZeroIsNot",       R"(<effect><option inactive="0x0"/></effect>)", 0, 10, false},
    {"ZeroDoesNotSwitchOn",        R"(<effect><option inactive="0"/></effect>)", 0, 10, true, true},
    {"FirstOptionCounts",          R"(<effect><option a="1"/><option inactive="1"/></effect>)", 0, 10, false},
    {"OtherRootIsIgnored",         R"(<demo><time start="1" end="2"/></demo>)", 0, 10, false},
    {"CommentsAndUnknownElements", R"(<effect><!--hi--><x/><time start="1" end="2"/></effect>)", 1, 2, false},
};
// clang-format on

TEST_F(EffectScript, SetsSpanAndActivity)
{
    for (const SpanCase& row : SPAN_CASES) {
        SCOPED_TRACE(row.name);
        writeText(SCRIPT, row.script);
        ProbeEffect loaded;
        loaded.setIdentity("probe", "it");
        loaded.setSpan(0.0f, 10.0f);
        loaded.setInactive(row.wasInactive);
        loaded.load(nullptr);
        EXPECT_EQ(loaded.getStart(), row.start);
        EXPECT_EQ(loaded.getEnd(), row.end);
        EXPECT_EQ(loaded.getInactive(), row.inactive);
    }
}

TEST_F(EffectScript, GivesAPluginTheFirstElementOfItsNameOnly)
{
    load(R"(<effect><time end="1"/>)"
         R"(<plugin type="color" name="Curve"><key time="0" value="1"/></plugin>)"
         R"(<plugin type="nonsense" name="curve"><key time="0" value="2"/></plugin>)"
         R"(<plugin type="spline" name="curve"><key time="0" value="3"/></plugin></effect>)");

    EXPECT_EQ(effect.curve.get(0.0f), 2.0f);
    EXPECT_EQ(effect.color.get(0.0f).x, 0.0f);
}

// clang-format off
constexpr struct KeptCase {
    const char* name;
    const char* script;
    bool isKept; // in a copy
} KEPT_CASES[] = {
    {"AllIsRead",         R"(<effect><time end="0.50" start="1"/><plugin name="beat"><action delay="0.1234567"/></plugin></effect>)", false},
    {"Declaration",       "<?xml version='1.0'?><effect><time/></effect>\n", false},
    {"AnotherRoot",       R"(<demo><time start="0" end="10"/></demo>)", true},
    {"Comment",           "<effect><!-- mine --><time/></effect>", true},
    {"CommentOutside",    "<effect><time/></effect><!-- mine -->", true},
    {"Text",              "<effect>mine<time/></effect>", true},
    {"UnknownPlugin",     R"(<effect><plugin name="gone"/></effect>)", true},
    {"SecondOfAName",     R"(<effect><plugin name="beat"/><plugin name="beat"/></effect>)", true},
    {"UnknownElement",    R"(<effect><plugin name="beat"><note/></plugin></effect>)", true},
    {"UnknownAttribute",  R"(<effect><time start="0" by="me"/></effect>)", true},
    {"UnknownWord",       R"(<effect><plugin name="curve"><attributes type="Smooth"/></plugin></effect>)", true},
};
// clang-format on

TEST_F(EffectScript, ThatHoldsMoreThanIsReadIsKeptInACopy)
{
    const std::string copy = std::string(SCRIPT) + ".bak";
    for (const KeptCase& row : KEPT_CASES) {
        SCOPED_TRACE(row.name);
        std::filesystem::remove(copy);
        savedAgain(row.script);
        EXPECT_EQ(readText(copy), row.isKept ? row.script : "");
    }
    std::filesystem::remove(copy);
    std::filesystem::create_symlink(folder.path("elsewhere"), copy);
    savedAgain("<effect>once more</effect>");
    EXPECT_EQ(readText(copy + ".2"), "<effect>once more</effect>");
    EXPECT_FALSE(std::filesystem::exists(copy));
    EXPECT_EQ(test::countLogged("log", "'script/probe.it.xml' holds what will not be saved"), 10);
}

TEST_F(EffectScript, ThatSomebodyElseChangedIsNotReplaced)
{
    const std::string mine = std::string(SCRIPT) + ".mine";
    load(FULL);
    effect.save();
    effect.setSpan(1.0f, 2.0f);
    effect.save(); // over our own
    EXPECT_FALSE(std::filesystem::exists(mine));

    const std::string ours = readText(SCRIPT);
    writeText(SCRIPT, "somebody else's");
    effect.save();
    effect.setSpan(1.0f, 3.0f);
    effect.save();
    EXPECT_EQ(readText(SCRIPT), "somebody else's");
    EXPECT_EQ(readText(mine), ours);
    EXPECT_NE(readText(mine + ".2").find("end=\"3\""), std::string::npos);
    EXPECT_EQ(test::countLogged("log", "'script/probe.it.xml' was changed by another"), 2);

    std::filesystem::remove(SCRIPT);
    effect.setSpan(1.0f, 2.0f);
    effect.save();
    EXPECT_EQ(readText(SCRIPT), ours);
}

TEST_F(EffectScript, ThatCannotBeReadNamesTheReasonAndIsNotWritten)
{
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[] { std::filesystem::create_directory(SCRIPT); },                "Is a directory"    },
        {[] { EXPECT_EQ(mkfifo(SCRIPT, 0666), 0); },                       "Not a regular file"},
        {[] { std::filesystem::create_symlink("probe.it.xml", SCRIPT); },  "Too many levels"   },
        {[] { std::filesystem::create_symlink("/etc/hostname", SCRIPT); },
         "it leads out of the show's folder, to '/etc/hostname'"                               },
        {[] { std::filesystem::create_symlink("../../gone", SCRIPT); },
         "it leads out of the show's folder, to '" +
             (folder.path().parent_path() / "gone").string() + "'"                             },
    };
    for (const auto& [make, reason] : cases) {
        SCOPED_TRACE(reason);
        std::filesystem::remove(SCRIPT);
        make();
        const auto type = std::filesystem::symlink_status(SCRIPT).type();
        const std::string message = thrownMessage([this] { effect.load(nullptr); });
        EXPECT_EQ(message.find("script/probe.it.xml: " + reason), 0u) << message;
        effect.save();
        EXPECT_EQ(std::filesystem::symlink_status(SCRIPT).type(), type);
    }
}

TEST_F(EffectScript, ThatIsMalformedNamesFileAndPlace)
{
    writeText(SCRIPT, "<effect>\n<time start=12.5/>\n</effect>\n");
    const std::string message = thrownMessage([this] { effect.load(nullptr); });

    EXPECT_NE(message.find("script/probe.it.xml"), std::string::npos) << message;
    EXPECT_NE(message.find("error at line 2"), std::string::npos) << message;
    EXPECT_NE(message.find("'=' expected!"), std::string::npos) << message;
}

struct Update {
    float time;          // seconds
    std::uint32_t fired; // counted by this update
};

const std::string THREE = R"(<action start="1" delay="0.5" repeat="3"/>)";

// clang-format off
const struct FiringCase {
    const char* name;
    std::string body;
    std::vector<Update> updates;
} FIRING_CASES[] = {
    {"OneByOne", THREE, {{0.9f, 0}, {1.0f, 0}, {1.01f, 1}, {1.6f, 1}, {2.2f, 1}, {3.0f, 0}, {9.0f, 0}}},
    {"AllInOneStep", THREE, {{0.9f, 0}, {2.2f, 3}, {9.0f, 0}}},
    {"AStepMayPassMoreThanThereAre", THREE, {{3.2f, 5}, {9.0f, 0}}},
    {"ASecondUpdateAtTheSameTime", THREE, {{1.2f, 1}, {1.2f, 0}}},
    {"StepBackStartsOver", THREE, {{1.9f, 2}, {1.2f, 0}, {1.3f, 1}, {1.6f, 1}}},
    {"ActionsAddUp", R"(<action start="1"/><action start="1.5"/><action start="3"/>)", {{1.9f, 2}, {3.5f, 1}}},
    {"EmptyDelayAndRepeatAreOne", R"(<action start="1" delay="" repeat=""/>)", {{1.5f, 1}, {2.5f, 0}}},
    {"MissingStartIsZero", R"(<action delay="1" repeat="2"/>)", {{0.5f, 1}}},
    {"NegativeRepeatIsNone", R"(<action start="0" repeat="-1"/>)", {{5.0f, 0}}},
    {"NoDelayFiresAllAtOnce", R"(<action start="1" delay="0" repeat="4"/>)", {{1.0f, 0}, {1.1f, 4}, {2.0f, 0}}},
    {"TinyDelayStaysInRange", R"(<action start="0" delay="1e-30" repeat="4"/>)", {{50.0f, 1000000001u}, {51.0f, 0}}},
    {"EmptyBodyFiresOnlyAfterAStepBack", "", {{5.0f, 0}, {1.0f, 0}, {1.5f, 2}}},
};
// clang-format on

TEST_F(EffectScript, GivesATriggerThatCountsWhatWasPassed)
{
    for (const FiringCase& row : FIRING_CASES) {
        SCOPED_TRACE(row.name);
        ProbeEffect loaded;
        loadPlugin(loaded, "beat", row.body);
        for (const auto& [time, fired] : row.updates) {
            loaded.update(time);
            EXPECT_EQ(loaded.beat.get(time - 0.1f), 0u) << "before the update";
            EXPECT_EQ(loaded.beat.get(time), fired) << "at " << time;
            EXPECT_EQ(loaded.beat.get(time + 0.1f), fired) << "at " << time;
        }
    }
}

const std::string RAMP = R"(<key time="0" value="0"/><key time="1" value="1"/>)";
const std::string HILL =
    R"(<key time="0" value="0"/><key time="0.25" value="1"/><key time="1" value="0"/>)";
const std::string LINEAR = R"(<attributes type="linear" before="constant" after="constant"/>)";

// clang-format off
const struct CurveCase {
    const char* name;
    std::string body;
    float time; // seconds
    float expected;
} CURVE_CASES[] = {
    {"ClimbsOnWithAdd", R"(<attributes type="linear" before="constant" after="add"/>)" + RAMP, 6.0f, 1.5f},
    {"RepeatsBefore", R"(<attributes type="linear" before="repeat" after="constant"/>)" + RAMP, -1.0f, 0.75f},
    {"ModesAreSmoothAndConstantByDefault", HILL, 0.5f, 0.583333f},
    {"TangentsAreThoseOfTheModesBefore", R"(<attributes type="smooth" before="repeat" after="repeat"/>)" + HILL, 0.5f, 0.583333f},
    {"UnknownTypeIsSquare", R"(<attributes type="Smooth"/>)" + RAMP, 3.9f, 0.0f},
    {"UnknownExtrapolationIsConstant", R"(<attributes type="linear" before="Add" after="REPEAT"/>)" + RAMP, 7.0f, 1.0f},
    {"LastAttributesWin", LINEAR + R"(<attributes type="square" before="add" after="add"/>)" + RAMP, 2.0f, 0.0f},
    {"MissingNumbersAreZero", LINEAR + R"(<key value="2"/><key time="1"/>)", 1.0f, 1.5f},
    {"KeysMayComeInAnyOrder", LINEAR + R"(<key time="1" value="1"/><key time="0" value="0"/>)", 1.0f, 0.25f},
};
// clang-format on

TEST_F(EffectScript, GivesACurveThatSpansTheEffect)
{
    for (const CurveCase& row : CURVE_CASES) {
        SCOPED_TRACE(row.name);
        ProbeEffect loaded;
        loadPlugin(loaded, "curve", row.body);
        EXPECT_NEAR(loaded.curve.get(row.time), row.expected, 1e-6f);
        loaded.curve.setupControl(0.0f);
        EXPECT_FLOAT_EQ(loaded.curve.get(3.0f), loaded.curve.get(0.0f)) << "without width";
    }
}

constexpr const char* BETWEEN = R"(<key time="0.2" r="1"/><key time="0.8" b="1"/>)";

// clang-format off
constexpr struct GradientCase {
    const char* name;
    const char* body;
    float time; // seconds
    Vector3f expected;
} GRADIENT_CASES[] = {
    {"NoKeysAreBlack",    "",      2.0f, {0, 0, 0}},
    {"BeforeTheFirstKey", BETWEEN, 0.2f, {1, 0, 0}},
    {"BetweenTheKeys",    BETWEEN, 2.0f, {0.5f, 0, 0.5f}},
    {"AfterTheLastKey",   BETWEEN, 3.8f, {0, 0, 1}},
    {"IsSmooth",          R"(<key time="0"/><key time="0.5" r="1"/><key time="1"/>)", 1.0f, {0.625f, 0, 0}},
    {"IsNotClamped",      R"(<key r="1.5" g="-1" b="2"/>)", 1.0f, {1.5f, -1, 2}},
    {"NoNumbersAreZero",  R"(<key time="0.2" r="red" g="1" b=""/><key time="0.8" r="x" g="1" b="blue"/>)", 2.0f, {0, 1, 0}},
};
// clang-format on

TEST_F(EffectScript, GivesAGradientThatSpansTheEffect)
{
    for (const GradientCase& row : GRADIENT_CASES) {
        SCOPED_TRACE(row.name);
        ProbeEffect loaded;
        loadPlugin(loaded, "color", row.body);
        EXPECT_TRUE(test::isNear(loaded.color.get(row.time), row.expected));
    }
}

} // namespace
} // namespace zavex::cadenza
