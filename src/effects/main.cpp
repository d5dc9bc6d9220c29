#include "cadenza/cad_factory.h"
#include "cadenza/cad_main.h"
#include "common/zvx_process.h"
#include "effects/common.h"
#include "effects/common_effect.h"
#include "vellum/vel_control_watch.h"

#include <cstdlib>
#include <deque>
#include <exception>
#include <new>

namespace zavex::effects {

struct Entry {
    const char* type;
    const char* name; // two of one type have two names, and a script each
    cadenza::EffectFactoryBase& (*factory)();
};

// The show in the order of drawing. Each class is named here and defined in a source of its own.
constexpr Entry EFFECTS[] = {
    {"clear",       "clear",       factoryOf<class Clear>      },
    {"stars",       "stars",       factoryOf<class Stars>      },
    {"lightspeed",  "lightspeed",  factoryOf<class Lightspeed> },
    {"ascii",       "ascii",       factoryOf<class Ascii>      },
    {"volumetric",  "volumetric",  factoryOf<class Volumetric> },
    {"flash",       "flash",       factoryOf<class Flash>      },
    {"plasma",      "plasma",      factoryOf<class Plasma>     },
    {"postprocess", "postprocess", factoryOf<class PostProcess>},
};

} // namespace zavex::effects

namespace {

using namespace zavex;

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

    cadenza::Effect& add(const char* type, const char* name)
    {
        cadenza::Effect* const effect = mDemo.addEffect(type, name);
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
    cadenza::Cadenza demo;
    demo.setup(-1.0f);
    demo.addFactory("common", &common);
    for (const effects::Entry& entry : effects::EFFECTS)
        demo.addFactory(entry.type, &entry.factory());

    Effects created(demo);
    auto& shared = static_cast<effects::Common&>(created.add("common", "Common"));
    for (const effects::Entry& entry : effects::EFFECTS) {
        cadenza::Effect& effect = created.add(entry.type, entry.name);
        static_cast<effects::CommonEffect&>(effect).setCommon(&shared);
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
