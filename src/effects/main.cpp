#include "cadenza/cad_factory.h"
#include "cadenza/cad_main.h"
#include "effects/clear.h"
#include "effects/common.h"
#include "effects/flash.h"
#include "effects/plasma.h"
#include "effects/postprocess.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <vector>

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
    {"flash",       "flash"      },
    {"plasma",      "plasma"     },
    {"postprocess", "postprocess"},
};

void play()
{
    cadenza::EffectFactory<effects::Common> common;
    cadenza::EffectFactory<effects::Clear> clear;
    cadenza::EffectFactory<effects::Flash> flash;
    cadenza::EffectFactory<effects::Plasma> plasma;
    cadenza::EffectFactory<effects::PostProcess> postprocess;

    // Stands before the application: its destructor saves the effects.
    std::vector<std::unique_ptr<cadenza::Effect>> created;

    cadenza::Cadenza demo;
    demo.setup(-1.0f);
    demo.addFactory("common", &common);
    demo.addFactory("clear", &clear);
    demo.addFactory("flash", &flash);
    demo.addFactory("plasma", &plasma);
    demo.addFactory("postprocess", &postprocess);

    for (const EffectEntry& entry : EFFECTS) {
        created.emplace_back(demo.addEffect(entry.type, entry.name));
        if (auto* const sharing = dynamic_cast<effects::CommonEffect*>(created.back().get()))
            sharing->setCommon(static_cast<effects::Common*>(created.front().get()));
    }
    demo.run();
}

/** One line on standard error, whatever line ends the message has. */
void report(const std::exception& exception)
{
    std::string message = exception.what();
    while (!message.empty() && message.back() == '\n')
        message.pop_back();
    std::ranges::replace(message, '\n', ' ');
    std::fflush(stdout);
    std::fprintf(stderr, "cadenza: %s\n", message.c_str());
}

} // namespace

int main()
{
    try {
        play();
    } catch (const std::exception& exception) {
        report(exception);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
