// What the first frame of an effect costs against those that follow: what is made for it must have
// been made before the song starts. And the time that this takes.

#include "cadenza/cad_effect.h"
#include "cadenza/cad_factory.h"
#include "cadenza/cad_main.h"
#include "cpu_cost.h"
#include "display/dis_display.h"
#include "effects/ascii.h"
#include "effects/clear.h"
#include "effects/common.h"
#include "effects/flash.h"
#include "effects/lightspeed.h"
#include "effects/plasma.h"
#include "effects/postprocess.h"
#include "effects/stars.h"
#include "effects/volumetric.h"
#include "figure.h"
#include "show_folder.h"

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace {

using zavex::bench::Bound;
using zavex::bench::Figures;
using zavex::bench::processorSeconds;

// A small window: a driver that draws in software fills pixels for so long that they hide the rest.
constexpr const char* SETUP = R"(<demo>
<time start="0" loop="on"/>
<display width="320" height="240" title="first frames"/>
<osd show="off"/>
<music mute="nosound"/>
</demo>)";

constexpr float FRAME = 1.0f / 60.0f;    // seconds
constexpr std::size_t COMPARED = 10;     // frames behind each first one
constexpr double MOST_FIRST_FRAME = 1.5; // of the median of those

/** The show, which seeks to each time at which effects begin, draws on from there and closes. */
class Show final : public zavex::cadenza::Cadenza {
public:
    template <typename EffectClass>
    void add(const char* type, const char* name)
    {
        static zavex::cadenza::EffectFactory<EffectClass> factory;
        addFactory(type, &factory);
        auto* const effect = static_cast<EffectClass*>(addEffect(type, name));
        if constexpr (std::is_base_of_v<zavex::effects::CommonEffect, EffectClass>)
            effect->setCommon(static_cast<zavex::effects::Common*>(mEffect.front()));
    }

    void onDraw() override
    {
        if (mCosts.empty())
            findEntries();
        const float start = mEntry->first;
        std::vector<double>& costs = mCosts[start];
        setTime(start + static_cast<float>(costs.size() + 1) * FRAME);
        costs.push_back(zavex::bench::costOf([this] { Cadenza::onDraw(); }).whole);
        if (mFirstFrame == 0.0)
            mFirstFrame = secondsSince(mBegin);
        if (costs.size() > COMPARED && ++mEntry == mNames.end())
            mDisplay->close();
    }

    void report(Figures& figures) const
    {
        std::printf("first_frames: %.2f s until the first of all (stated)\n", mFirstFrame);
        for (const auto& [start, costs] : mCosts) {
            const double next = zavex::bench::median({costs.begin() + 1, costs.end()});
            std::printf("first_frames: %s: %.1f ms, next %.1f ms (stated)\n",
                        mNames.at(start).c_str(), 1e3 * costs.front(), 1e3 * next);
            figures.report("first_frames: " + mNames.at(start) + ", first / next",
                           costs.front() / next, MOST_FIRST_FRAME, Bound::AT_MOST);
        }
    }

private:
    using Clock = std::chrono::steady_clock;

    static double secondsSince(Clock::time_point begin)
    {
        return std::chrono::duration<double>(Clock::now() - begin).count();
    }

    void findEntries()
    {
        for (const zavex::cadenza::Effect* effect : mEffect) {
            std::string& names = mNames[effect->getStart()];
            names += (names.empty() ? "" : "+") + effect->getName();
        }
        mEntry = mNames.begin();
    }

    std::map<float, std::string> mNames;         // of the effects that begin at a time
    std::map<float, std::vector<double>> mCosts; // of the frames from there on, seconds
    std::map<float, std::string>::const_iterator mEntry;
    Clock::time_point mBegin = Clock::now();
    double mFirstFrame = 0.0; // seconds after this object was made
};

} // namespace

void zavex::bench::run(Figures& figures)
{
    setenv("CADENZA_SEED", "1", 1);
    setenv("MESA_SHADER_CACHE_DISABLE", "true", 1); // as where the show runs for the first time
    const ShowFolder folder(DEMO_FOLDER, SETUP);
    Show show;
    show.setup(-1.0f);
    show.add<effects::Common>("common", "Common");
    show.add<effects::Clear>("clear", "clear");
    show.add<effects::Stars>("stars", "stars");
    show.add<effects::Lightspeed>("lightspeed", "lightspeed");
    show.add<effects::Ascii>("ascii", "ascii");
    show.add<effects::Volumetric>("volumetric", "volumetric");
    show.add<effects::Flash>("flash", "flash");
    show.add<effects::Plasma>("plasma", "plasma");
    show.add<effects::PostProcess>("postprocess", "postprocess");
    show.run();
    show.report(figures);
}
