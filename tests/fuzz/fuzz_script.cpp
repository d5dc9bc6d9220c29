// A script that is read plays, and once it was saved it stays, byte for byte, as it is.

#include "cadenza/probe_effect.h"
#include "cadenza/scratch.h"
#include "common/zvx_system.h"
#include "fuzz/fuzz_target.h"

namespace zavex::fuzz {

namespace {

constexpr const char* SCRIPT = "script/probe.it.xml";
constexpr int STEPS = 64; // over an effect's span

void play(test::ProbeEffect& effect)
{
    effect.setupControl();
    const float length = effect.getEnd() - effect.getStart();
    for (int step = -1; step <= STEPS + 1; ++step) {
        const float time = length * static_cast<float>(step) / STEPS;
        effect.update(time);
        effect.draw(time, 0.0f, 0.0f);
        effect.color.get(time);
    }
}

/** Loads the script that is there, plays and saves it. @return what was saved. */
std::string saved()
{
    test::ProbeEffect effect;
    effect.setIdentity("probe", "it");
    effect.load(nullptr);
    play(effect);
    effect.save();
    return test::readText(SCRIPT);
}

} // namespace

void script(Bytes input)
{
    static const test::ScratchFolder folder;
    test::writeText(SCRIPT, textOf(input));
    std::string first;
    try {
        first = saved();
    } catch (const Exception&) {
        return;
    }
    try {
        // Loading gives a trigger without actions the standard one.
        if (first.find(R"(name="beat"/>)") != std::string::npos)
            first = saved();
        expect(saved() == first, "a script loaded and saved again differs");
    } catch (const Exception&) {
        expect(false, "a saved script is refused");
    }
}

} // namespace zavex::fuzz
