#pragma once

#include "effects/clear.h"
#include "effects/common.h"
#include "effects/postprocess.h"

#include "am/am.h"
#include "cadenza/scratch.h"
#include "support/gl_display.h"
#include "support/picture.h"

#include <cstdlib>
#include <memory>
#include <string>

namespace zavex::effects {

// Parts of a script file.

/** A curve that goes straight from one value at the effect's start to another at its end. */
inline std::string ramp(const std::string& name, float from, float to)
{
    return "<plugin type='spline' name='" + name + "'><attributes type='linear'/>" +
           "<key time='0' value='" + std::to_string(from) + "'/><key time='1' value='" +
           std::to_string(to) + "'/></plugin>";
}

/** A curve of one value. */
inline std::string flat(const std::string& name, float value)
{
    return ramp(name, value, value);
}

/** A colour that stays; `values` are the attributes r, g and b. */
inline std::string colour(const std::string& values, const std::string& name = "color")
{
    return "<plugin type='color' name='" + name + "'><key time='0' " + values + "/></plugin>";
}

/**
 * Effects on a display of their own: the show's pictures and shaders, scripts in a temporary
 * folder, the shared targets at hand.
 */
class EffectsStage : public testing::Test {
protected:
    static constexpr int WIDTH = 320;
    static constexpr int HEIGHT = 240;
    static constexpr float SPAN = 10.0f;  // seconds that each effect lasts
    static constexpr float FRAME = 0.04f; // seconds

    EffectsStage()
    {
        setenv("CADENZA_SEED", "7", 1); // effects may draw as soon as they are made
        mArchives.addArchive("./");
        mArchives.addArchive(CADENZA_DEMO_DIR "/");
        mWindow->setArchive(&mArchives);
        mCommon.load(&*mWindow);
        mCommon.setup();
        clearTo("");
    }

    /** Loads and sets up an effect with these plugins in its script. */
    void prepare(CommonEffect& effect, const std::string& plugins, float span = SPAN)
    {
        test::writeText("script/an.effect.xml", "<effect><time start='0' end='" +
                                                    std::to_string(span) + "'/>" + plugins +
                                                    "</effect>");
        effect.setIdentity("an", "effect");
        effect.setCommon(&mCommon);
        effect.load(&*mWindow);
        effect.setup();
    }

    /** What a picture begins with from here on; black without `values`. */
    void clearTo(const std::string& values)
    {
        mClear = std::make_unique<Clear>();
        prepare(*mClear, values.empty() ? "" : colour(values));
    }

    /** As in the show: with glow and grain as given, 0 for none. */
    void preparePostProcess(float glow, float noise)
    {
        mPostProcess = std::make_unique<PostProcess>();
        prepare(*mPostProcess,
                flat("glow", 2.0f * glow - 1.0f) + flat("glownoise", 2.0f * noise - 1.0f));
    }

    /** The picture of a frame in which `draw` draws into the shared target. */
    template <typename Draw>
    test::Picture present(Draw draw)
    {
        return test::pictureOf(*mWindow, [&] {
            step(*mClear, 1.0f, FRAME);
            draw();
            mPostProcess->draw(1.0f, FRAME, 0.1f);
        });
    }

    static void step(cadenza::Effect& effect, float time, float delta)
    {
        effect.update(time);
        effect.draw(time, delta, time / (effect.getEnd() - effect.getStart()));
    }

    test::ScratchFolder mFolder;
    // Effects stand before the display: it deletes what they hold of it.
    Common mCommon;
    std::unique_ptr<Clear> mClear;
    std::unique_ptr<PostProcess> mPostProcess;
    am::ArchiveManager mArchives;
    test::GlDisplay mWindow{WIDTH, HEIGHT};
};

} // namespace zavex::effects
