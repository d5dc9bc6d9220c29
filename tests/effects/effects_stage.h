#pragma once

#include "effects/clear.h"
#include "effects/common.h"
#include "effects/postprocess.h"

#include "am/am.h"
#include "cadenza/scratch.h"
#include "support/gl_display.h"
#include "support/picture.h"

#include <cstdlib>
#include <string>
#include <type_traits>

namespace zavex::effects {

// Parts of a script file.

/** A curve of one value. */
inline std::string flat(const std::string& name, float value)
{
    return "\t<plugin type=\"spline\" name=\"" + name + "\">\n\t\t<key time=\"0\" value=\"" +
           std::to_string(value) + "\"/>\n\t</plugin>\n";
}

/** A curve that goes straight from one value at the effect's start to another at its end. */
inline std::string ramp(const std::string& name, float from, float to)
{
    return "\t<plugin type=\"spline\" name=\"" + name +
           "\">\n\t\t<attributes type=\"linear\"/>\n\t\t<key time=\"0\" value=\"" +
           std::to_string(from) + "\"/>\n\t\t<key time=\"1\" value=\"" + std::to_string(to) +
           "\"/>\n\t</plugin>\n";
}

/** A colour that stays; `values` are the attributes r, g and b. */
inline std::string colour(const std::string& values, const std::string& name = "color")
{
    return "\t<plugin type=\"color\" name=\"" + name + "\">\n\t\t<key time=\"0\" " + values +
           "/>\n\t</plugin>\n";
}

/**
 * Effects on a display of their own: the show's pictures and shaders, scripts in a temporary
 * folder, the shared targets at hand.
 */
class EffectsStage : public testing::Test {
protected:
    static constexpr int WIDTH = 320;
    static constexpr int HEIGHT = 240;
    static constexpr float SPAN = 10.0f; // seconds that each effect lasts

    EffectsStage()
    {
        setenv("CADENZA_SEED", "7", 1); // effects may draw as soon as they are made
        mArchives.addArchive("./");
        mArchives.addArchive(CADENZA_DEMO_DIR "/");
        mWindow->setArchive(&mArchives);
        prepare(mCommon, "common", "");
    }

    /** Loads and sets up an effect with these plugins in its script. */
    template <typename EffectClass>
    void prepare(EffectClass& effect, const std::string& type, const std::string& plugins,
                 float span = SPAN)
    {
        test::writeText("script/" + type + "." + type + ".xml",
                        "<effect>\n\t<time start=\"0\" end=\"" + std::to_string(span) + "\"/>\n" +
                            plugins + "</effect>\n");
        effect.setIdentity(type, type);
        if constexpr (std::is_base_of_v<CommonEffect, EffectClass>)
            effect.setCommon(&mCommon);
        effect.load(&*mWindow);
        effect.setupControl();
        effect.setup();
    }

    /** As in the show: with glow and grain as given, 0 for none. */
    void preparePostProcess(float glow, float noise)
    {
        prepare(mPostProcess, "postprocess",
                flat("glow", 2.0f * glow - 1.0f) + flat("glownoise", 2.0f * noise - 1.0f));
    }

    /** The picture of a frame in which `draw` draws into the shared target. */
    template <typename Draw>
    test::Picture present(Draw draw)
    {
        return test::pictureOf(*mWindow, [&] {
            draw();
            mPostProcess.draw(1.0f, 0.04f, 0.1f);
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
    Clear mClear;
    PostProcess mPostProcess;
    am::ArchiveManager mArchives;
    test::GlDisplay mWindow{WIDTH, HEIGHT};
};

} // namespace zavex::effects
