// The processor's time for a frame of each scene: batched, against the same shapes with a glBegin
// and a glEnd each.

#include "effects/clear.h"
#include "effects/postprocess.h"

#include "am/am.h"
#include "common/zvx_system.h"
#include "cpu_cost.h"
#include "display/dis_display.h"
#include "display/dis_immediate.h"
#include "figure.h"
#include "pictures.h"
#include "plain_scenes.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
namespace bench = zavex::bench;
namespace effects = zavex::effects;

using zavex::display::DisplayGL;
using zavex::display::DisplayObsolete;
using zavex::mathbase::Vector3f;

constexpr int WIDTH = 1024; // pixels
constexpr int HEIGHT = 768;
constexpr int RUNS = 41;
constexpr float DURATION = 40.0f; // seconds
constexpr float TIME = 20.6f;     // of the frame that is drawn

std::string number(float value)
{
    return std::to_string(value);
}

std::string curve(const char* name, float from, float to)
{
    return std::string("<plugin type=\"spline\" name=\"") + name +
           "\"><attributes type=\"linear\"/><key time=\"0\" value=\"" + number(from) +
           "\"/><key time=\"1\" value=\"" + number(to) + "\"/></plugin>";
}

std::string colour(const char* name, const Vector3f& value)
{
    return std::string("<plugin type=\"color\" name=\"") + name + "\"><key time=\"0\" r=\"" +
           number(value.x) + "\" g=\"" + number(value.y) + "\" b=\"" + number(value.z) +
           "\"/></plugin>";
}

/** A folder of its own for the scripts, which is the working directory while it lives. */
class ScriptFolder {
public:
    ScriptFolder() : mBefore(fs::current_path())
    {
        std::string pattern = (fs::temp_directory_path() / "scenes-XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            throw zavex::Exception("Could not create the folder '%s'.", pattern.c_str());
        mFolder = pattern;
        fs::create_directory(mFolder / "script");
        fs::current_path(mFolder);
    }
    ~ScriptFolder()
    {
        fs::current_path(mBefore);
        fs::remove_all(mFolder);
    }
    ScriptFolder(const ScriptFolder&) = delete;
    ScriptFolder& operator=(const ScriptFolder&) = delete;

private:
    fs::path mBefore;
    fs::path mFolder;
};

/** The scenes and what they are shown with. */
class Show {
public:
    explicit Show(DisplayGL& display) : mDisplay(display), mParts(display)
    {
        prepare(mCommon, "common", "");
        prepare(mClear, "clear", "");
        prepare(mPostProcess, "postprocess", curve("glow", -1, -1) + curve("glownoise", -1, -1));
        prepare(mStars, "stars", curve("not fast enough", mCurves.brightness, mCurves.brightness));
        prepare(mAscii, "ascii", "");
        prepare(mLightspeed, "lightspeed",
                curve("not fast enough", mCurves.brightness, mCurves.brightness) +
                    curve("explode", mCurves.explode, mCurves.explode) +
                    curve("rot x", mCurves.rotX, mCurves.rotX) +
                    curve("rot y", mCurves.rotY, mCurves.rotY) +
                    curve("greetings (to)", mCurves.greetings, mCurves.greetings));
        prepare(mVolumetric, "volumetric",
                colour("color", mCurves.road) + colour("color_house_create", mCurves.houses) +
                    curve("path x", mCurves.pathStart.x, mCurves.pathEnd.x) +
                    curve("path y", mCurves.pathStart.y, mCurves.pathEnd.y) +
                    curve("path z", mCurves.pathStart.z, mCurves.pathEnd.z) +
                    curve("code", mCurves.credits, mCurves.credits));
        mCommon.from = {0.0f, 0.0f, 0.0f};
        mCommon.to = {0.0f, 5.0f, 10.0f};
    }

    void measure(bench::Figures& figures)
    {
        compare(figures, "stars", 1.5f, mStars,
                [&] { drawStarsPlainly(mParts, mCurves, mStars, mCommon); });
        compare(figures, "ascii", 2.0f, mAscii, [&] { drawAsciiPlainly(mParts, mAscii, 2.0f); });
        compare(figures, "lightspeed", TIME, mLightspeed,
                [&] { drawLightspeedPlainly(mParts, mCurves, mLightspeed, TIME); });
        compare(figures, "volumetric", TIME, mVolumetric,
                [&] { drawVolumetricPlainly(mParts, mCurves, mVolumetric, TIME, DURATION); });
    }

private:
    template <typename EffectClass>
    void prepare(EffectClass& effect, const std::string& type, const std::string& plugins)
    {
        std::ofstream("script/" + type + "." + type + ".xml")
            << "<effect><time start=\"0\" end=\"" << DURATION << "\"/>" << plugins << "</effect>";
        effect.setIdentity(type, type);
        if constexpr (std::is_base_of_v<effects::CommonEffect, EffectClass>)
            effect.setCommon(&mCommon);
        effect.load(&mDisplay);
        effect.setupControl();
        effect.setup();
    }

    std::vector<std::uint8_t> pictureOf(const std::function<void()>& draw)
    {
        std::srand(1); // the same dither in every picture
        mDisplay.resetStates();
        mClear.draw(1.0f, 0.0f, 0.0f);
        draw();
        mPostProcess.draw(1.0f, 0.0f, 0.0f);
        return bench::screenshot(mDisplay);
    }

    void compare(bench::Figures& figures, const std::string& name, float time,
                 zavex::cadenza::Effect& effect, const std::function<void()>& plainly)
    {
        const auto batched = [&] { effect.draw(time, 0.0f, time / DURATION); };
        const auto expected = pictureOf(plainly);
        figures.report(name + ", mean difference of the pictures",
                       bench::meanDifferenceOf(expected, pictureOf(batched)), 0.2,
                       bench::Bound::AT_MOST);

        mDisplay.resetStates();
        mClear.draw(1.0f, 0.0f, 0.0f);
        DisplayObsolete::flush();
        const auto arrays = zavex::display::Immediate::live().drawnArrays();
        bench::costOf(batched);
        std::printf("%s: %lu arrays (stated)\n", name.c_str(),
                    zavex::display::Immediate::live().drawnArrays() - arrays);

        const bench::Comparison result = bench::compare(RUNS, batched, plainly);
        bench::stateCost((name + ", batched").c_str(), result.frame);
        bench::stateCost((name + ", glBegin each").c_str(), result.reference);
        figures.report(name + " submitting, batched / glBegin each", result.ratio.submitting, 0.6,
                       bench::Bound::AT_MOST);
        std::printf("%s whole, batched / glBegin each: %.4g (stated)\n", name.c_str(),
                    result.ratio.whole);
    }

    DisplayGL& mDisplay;
    bench::Curves mCurves;
    bench::SceneParts mParts;
    effects::Common mCommon;
    effects::Clear mClear;
    effects::PostProcess mPostProcess;
    effects::Stars mStars;
    effects::Ascii mAscii;
    effects::Lightspeed mLightspeed;
    effects::Volumetric mVolumetric;
};

} // namespace

void zavex::bench::run(Figures& figures)
{
    setenv("CADENZA_SEED", "1", 1);
    keepMemory();
    const ScriptFolder folder;
    am::ArchiveManager archive;
    archive.addArchive(DEMO_FOLDER);
    const std::unique_ptr<DisplayGL> display(DisplayGL::create());
    display->setArchive(&archive);
    display->open(zavex::display::WindowMode("scenes", WIDTH, HEIGHT, false));
    Show(*display).measure(figures);
    display->close();
}
