#include "cadenza/cad_effect.h"
#include "cadenza/probe_effect.h"
#include "cadenza/scratch.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <utility>

#include <sys/stat.h>

namespace zavex::cadenza {
namespace {

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
    const std::string climb = R"(<plugin name="curve"><attributes type="linear"/>)"
                              R"(<key time="0" value="0"/><key time="1" value="1"/></plugin>)";
    load("<effect>" + climb + "</effect>");
    EXPECT_FLOAT_EQ(effect.curve.get(5.0f), 0.5f);
    load(R"(<effect><time start="2" end="6"/></effect>)");
    EXPECT_FLOAT_EQ(effect.curve.get(3.0f), 0.75f);
    effect.setSpan(4.0f, 24.0f);
    EXPECT_FLOAT_EQ(effect.curve.get(5.0f), 0.25f);
}

/** A number that scripts are likely to hold, of few different ones, and some that hardly differ. */
std::string anyNumber(std::mt19937& random)
{
    constexpr const char* numbers[] = {"0",    "0.25",     "0.5",      "0.5", "-1",
                                       "1e-5", "0.333333", "0.333333", "1",   "nan"};
    return numbers[random() % std::size(numbers)];
}

/** Keys of each kind in any order, many of them at one time. */
std::string anyScript(std::mt19937& random)
{
    std::string curve = R"(<effect><plugin name="curve"><attributes type="linear"/>)";
    std::string color = R"(</plugin><plugin name="color">)";
    for (auto keys = random() % 9; keys > 0; --keys) {
        const auto value = [&random] { return "='" + anyNumber(random) + "' "; };
        curve += "<key time" + value() + "value" + value() + "/>";
        color += "<key time" + value() + "r" + value() + "g" + value() + "b" + value() + "/>";
    }
    return curve + color + R"(</plugin><plugin name="beat"><action/></plugin></effect>)";
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

TEST_F(EffectScript, KeepsTheOrderOfKeysAtOneTime)
{
    std::mt19937 random(12);
    for (int turn = 0; turn < 50; ++turn) {
        const std::string script = anyScript(random);
        SCOPED_TRACE(script);
        const std::string saved = savedAgain(script);
        ASSERT_EQ(savedAgain(saved), saved);
    }
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
}

// clang-format off
constexpr struct SpanCase {
    const char* name;
    const char* script;
    float start; // seconds
    float end;   // seconds
    bool inactive;
} SPAN_CASES[] = {
    {"MissingEndIsZero",           R"(<effect><time start="3"/></effect>)", 3, 0, false},
    {"NoTimeKeepsTheSpan",         R"(<effect><option inactive="1"/></effect>)", 0, 10, true},
    {"FirstTimeCounts",            R"(<effect><time start="1" end="2"/><time end="9"/></effect>)", 1, 2, false},
    {"AnyNumberButZeroIsInactive", R"(<effect><option inactive="2"/></effect>)", 0, 10, true},
    {"HexadecimalZeroIsNot",       R"(<effect><option inactive="0x0"/></effect>)", 0, 10, false},
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
        loaded.load(nullptr);
        EXPECT_EQ(loaded.getStart(), row.start);
        EXPECT_EQ(loaded.getEnd(), row.end);
        EXPECT_EQ(loaded.getInactive(), row.inactive);
    }
}

TEST_F(EffectScript, ZeroInactiveDoesNotSwitchOn)
{
    effect.setInactive(true);
    load(R"(<effect><option inactive="0"/></effect>)");
    EXPECT_TRUE(effect.getInactive());
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

} // namespace
} // namespace zavex::cadenza
