#include "cadenza/cad_factory.h"
#include "cadenza/cad_main.h"
#include "common/zvx_process.h"
#include "effects/ascii.h"
#include "effects/clear.h"
#include "effects/common.h"
#include "effects/flash.h"
#include "effects/lightspeed.h"
#include "effects/plasma.h"
#include "effects/postprocess.h"
#include "effects/stars.h"
#include "effects/volumetric.h"
#include "vellum/vel_control_watch.h"

#include <cstdlib>
#include <deque>
#include <exception>
#include <new>

namespace {

using namespace zavex;

struct EffectEntry {
    const char* type;
    const char* name;
};

// The order of creation is the drawing order of every frame; all but the first share the first.
constexpr EffectEntry EFFECTS[] = {
    {"common",      "Common"     },
    {"clear",       "clear"      },
    {"stars",       "stars"      },
    {"lightspeed",  "lightspeed" },
    {"ascii",       "ascii"      },
    {"volumetric",  "volumetric" },
    {"flash",       "flash"      },
    {"plasma",      "plasma"     },
    {"postprocess", "postprocess"},
};

/**
 * The effects that the program has created. Ends the run, then releases those that are on no
 * timeline; the others are gone with the editor.
 */
class Effects {
public:
    explicit Effects(cadenza::Cadenza& demo) : mDemo(demo) {}
    Effects(const Effects&) = delete;
    Effects& operator=(const Effects&) = delete;

    ~Effects()
    {
        mDemo.close();
        for (const Created& created : mCreated)
            if (!created.watch.isGone())
                delete created.effect;
    }

    cadenza::Effect& add(const EffectEntry& entry)
    {
        cadenza::Effect* const effect = mDemo.addEffect(entry.type, entry.name);
        return *mCreated.emplace_back(effect).effect;
    }

private:
    struct Created {
        explicit Created(cadenza::Effect* newEffect) : effect(newEffect), watch(*newEffect) {}

        cadenza::Effect* effect;
        vellum::ControlWatch watch;
    };

    cadenza::Cadenza& mDemo;
    std::deque<Created> mCreated;
};

/** @return Whether all that was to be saved was saved. */
bool play()
{
    cadenza::EffectFactory<effects::Common> common;
    cadenza::EffectFactory<effects::Clear> clear;
    cadenza::EffectFactory<effects::Flash> flash;
    cadenza::EffectFactory<effects::Plasma> plasma;
    cadenza::EffectFactory<effects::PostProcess> postprocess;
    cadenza::EffectFactory<effects::Stars> stars;
    cadenza::EffectFactory<effects::Volumetric> volumetric;
    cadenza::EffectFactory<effects::Lightspeed> lightspeed;
    cadenza::EffectFactory<effects::Ascii> ascii;

    cadenza::Cadenza demo;
    demo.setup(-1.0f);
    demo.addFactory("common", &common);
    demo.addFactory("clear", &clear);
    demo.addFactory("flash", &flash);
    demo.addFactory("plasma", &plasma);
    demo.addFactory("postprocess", &postprocess);
    demo.addFactory("stars", &stars);
    demo.addFactory("volumetric", &volumetric);
    demo.addFactory("lightspeed", &lightspeed);
    demo.addFactory("ascii", &ascii);

    Effects effects(demo);
    effects::Common* shared = nullptr;
    for (const EffectEntry& entry : EFFECTS) {
        cadenza::Effect& effect = effects.add(entry);
        if (auto* const sharing = dynamic_cast<effects::CommonEffect*>(&effect))
            sharing->setCommon(shared);
        else
            shared = static_cast<effects::Common*>(&effect);
    }
    demo.run();
    demo.close();
    return !demo.hasSaveFailed();
}

} // namespace

int main()
{
    zavex::prepareProcess();
    try {
        return play() ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::bad_alloc&) {
        zavex::reportFailure("there is not enough memory");
        return EXIT_FAILURE;
    } catch (const std::exception& exception) {
        zavex::reportFailure("%s", exception.what());
        return EXIT_FAILURE;
    }
}
