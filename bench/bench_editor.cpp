// What the editor costs over the show at 1920 x 1080: the processor's time that it adds to a frame,
// a drag step in a long curve, and what a frame allocates while nothing changes.

#include "cadenza/cad_effect.h"
#include "cadenza/cad_factory.h"
#include "cadenza/cad_main.h"
#include "cadenza/cad_plugin_spline.h"
#include "common/zvx_system.h"
#include "cpu_cost.h"
#include "display/dis_display.h"
#include "display/dis_event.h"
#include "display/dis_glinclude.h"
#include "effects/clear.h"
#include "effects/common.h"
#include "effects/flash.h"
#include "effects/plasma.h"
#include "effects/postprocess.h"
#include "figure.h"
#include "show_folder.h"
#include "support/allocation_counter.h"
#include "vellum/vel_callback.h"
#include "vellum/vel_event.h"
#include "xml/xml_iteratorconst.h"
#include "xml/xml_parser.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using zavex::bench::Bound;
using zavex::bench::Cost;
using zavex::bench::Figures;
using zavex::bench::median;
using zavex::bench::processorSeconds;
using zavex::mathbase::Vector2f;
using zavex::test::AllocationCounter;
using zavex::vellum::Control;

constexpr const char* SETUP = R"(<demo>
<time start="20" loop="on"/>
<display width="1920" height="1080" title="editor"/>
<osd show="off"/>
<music mute="nosound"/>
</demo>)";

constexpr int WARM_FRAMES = 4;        // before each of the two measurements
constexpr int PAIRS = 21;             // of a frame with the editor and one without
constexpr float SHOW_LENGTH = 180.0f; // seconds
constexpr int LAST_PAIRED = WARM_FRAMES + 2 * PAIRS;
constexpr int STILL_FRAMES = 20;
constexpr int KEYS = 10000;
constexpr int DRAG_STEPS = 200;
constexpr double MOST_DRAG_SECONDS = 1e-3;

Cost costNow()
{
    return {processorSeconds(CLOCK_THREAD_CPUTIME_ID), processorSeconds(CLOCK_PROCESS_CPUTIME_ID)};
}

double medianOf(const std::vector<Cost>& costs, double Cost::*part)
{
    std::vector<double> values;
    values.reserve(costs.size());
    for (const Cost& cost : costs)
        values.push_back(cost.*part);
    return median(std::move(values));
}

/** Counts the changes that a curve reports. */
class Changes final : public zavex::vellum::Callback {
public:
    void controlAction(Control* /*control*/, zavex::vellum::Action action) override
    {
        count += action == zavex::vellum::ACTION_SPLINE_CHANGED ? 1 : 0;
    }

    int count = 0;
};

void send(Control& lane, const char* type, Vector2f position)
{
    zavex::vellum::Event event;
    event.type = type;
    event.button = zavex::display::MOUSE_LEFT;
    event.mousePos = position;
    event.mousePosWorld = position;
    lane.handleEvent(event);
}

/** Fills a curve up to `KEYS` keys between those that it has. */
void fill(zavex::cadenza::Spline& curve)
{
    std::string document = "<effect><plugin>";
    for (int key = 0; key < KEYS; ++key)
        document += "<key time='" + std::to_string((key + 0.5) / KEYS) + "' value='" +
                    std::to_string(0.5 * (key % 3 - 1)) + "'/>";
    document += "</plugin></effect>";
    zavex::xml::XmlParser parser;
    parser.parse(document);
    zavex::xml::IteratorConst plugin = parser.createIterator("plugin");
    ++plugin;
    curve.load(plugin);
}

/** The dearest of many steps that drag a key through a curve of `KEYS` keys, in seconds. */
double dragStep(zavex::cadenza::Spline& curve)
{
    fill(curve);
    Changes changes;
    curve.setCallback(&changes);
    const Control::Area lane = curve.getArea();
    // In the lane's middle there is a key under each pixel.
    const float middle = lane.mMin.y + 0.5f * lane.getHeight();
    const float start = lane.mMin.x + 0.25f * lane.getWidth();
    send(curve, "mousemove", {start, middle});
    send(curve, "mousedown", {start, middle});

    double dearest = 0.0;
    for (int step = 1; step <= DRAG_STEPS; ++step) {
        const float share = static_cast<float>(step) / DRAG_STEPS;
        const Vector2f position{start + 0.5f * share * lane.getWidth(), middle + 10.0f * share};
        const double before = processorSeconds(CLOCK_THREAD_CPUTIME_ID);
        send(curve, "mousemove", position);
        dearest = std::max(dearest, processorSeconds(CLOCK_THREAD_CPUTIME_ID) - before);
    }
    send(curve, "mouseup", {start, middle});
    if (changes.count != DRAG_STEPS)
        throw zavex::Exception("%d of %d drag steps changed the curve", changes.count, DRAG_STEPS);
    return dearest;
}

/** The show, which measures its own frames one after the other and then closes its window. */
class Show final : public zavex::cadenza::Cadenza {
public:
    void onDraw() override
    {
        glFinish();
        const Cost now = costNow();
        frameEnds({now.submitting - mBegin.submitting, now.whole - mBegin.whole});
        if (++mFrame > LAST_PAIRED + WARM_FRAMES + STILL_FRAMES) {
            mDragStep = dragStep(smoothCurve());
            mDisplay->close();
            return;
        }
        frameBegins();
        mBegin = costNow();
        mCounter.emplace();
        Cadenza::onDraw();
    }

    void report(Figures& figures) const
    {
        for (const auto& [name, part] : {
                 std::pair{"submitting", &Cost::submitting},
                 std::pair{"whole",      &Cost::whole     }
        }) {
            const double with = medianOf(mWith, part);
            const double added = medianOf(mAdded, part);
            std::printf("editor, %s: adds %.3f ms to a frame, %.1f %% of its %.3f ms (stated)\n",
                        name, 1e3 * added, 1e2 * added / with, 1e3 * with);
        }
        figures.report("editor, allocations in a frame with nothing changing", mAllocations, 0.0,
                       Bound::AT_MOST);
        figures.report("editor, drag step among 10,000 keys (ms)", 1e3 * mDragStep,
                       1e3 * MOST_DRAG_SECONDS, Bound::AT_MOST);
    }

private:
    bool isStill() const { return mFrame > LAST_PAIRED; }

    /**
     * One frame with the editor and the same without, at moments all over the show; then time
     * stands still.
     */
    void frameBegins()
    {
        mEditorShown = mFrame % 2 == 1 || isStill();
        mEffect.front()->getRoot()->setVisible(mEditorShown);
        if (!isStill())
            setTime(momentOf((mFrame + 1) / 2));
        else if (mFrame == LAST_PAIRED + 1)
            pause();
    }

    static float momentOf(int pair)
    {
        constexpr int lastPair = LAST_PAIRED / 2;
        return SHOW_LENGTH * static_cast<float>(pair) / static_cast<float>(lastPair + 1);
    }

    void pause()
    {
        zavex::display::KeyEvent space;
        space.key = zavex::display::KEY_SPACE;
        onKeyDown(space);
    }

    void frameEnds(const Cost& cost)
    {
        const auto allocations = static_cast<double>(mCounter->count());
        if (mFrame > LAST_PAIRED + WARM_FRAMES)
            mAllocations = std::max(mAllocations, allocations);
        if (mFrame <= WARM_FRAMES || isStill())
            return;
        if (mEditorShown)
            mWith.push_back(cost);
        else
            mAdded.push_back(
                {mWith.back().submitting - cost.submitting, mWith.back().whole - cost.whole});
    }

    /** The first curve of the show, as the kind that is dearest to edit: all its tangents move. */
    zavex::cadenza::Spline& smoothCurve()
    {
        zavex::cadenza::Spline* curve = nullptr;
        for (std::size_t index = 0; !curve && index < mEffect.size(); ++index)
            curve = firstCurve(*mEffect[index]);
        if (!curve)
            throw zavex::Exception("The show has no curve");
        curve->setSplineType("smooth");
        return *curve;
    }

    static zavex::cadenza::Spline* firstCurve(zavex::cadenza::Effect& effect)
    {
        zavex::cadenza::Spline* curve = nullptr;
        for (int index = 0; !curve && index < effect.getChildCount(); ++index)
            curve = dynamic_cast<zavex::cadenza::Spline*>(effect.getChild(index));
        return curve;
    }

    int mFrame = 0;
    bool mEditorShown = false;
    Cost mBegin{};
    std::optional<AllocationCounter> mCounter{std::in_place}; // of the last frame
    std::vector<Cost> mWith;
    std::vector<Cost> mAdded; // by the editor, against the frame that follows without it
    double mAllocations = 0.0;
    double mDragStep = 0.0; // seconds
};

void measure(Figures& figures)
{
    namespace effects = zavex::effects;
    const zavex::bench::ShowFolder folder(DEMO_FOLDER, SETUP);
    zavex::cadenza::EffectFactory<effects::Common> common;
    zavex::cadenza::EffectFactory<effects::Clear> clear;
    zavex::cadenza::EffectFactory<effects::Flash> flash;
    zavex::cadenza::EffectFactory<effects::Plasma> plasma;
    zavex::cadenza::EffectFactory<effects::PostProcess> postprocess;
    Show show;
    show.setup(-1.0f);
    show.addFactory("common", &common);
    show.addFactory("clear", &clear);
    show.addFactory("flash", &flash);
    show.addFactory("plasma", &plasma);
    show.addFactory("postprocess", &postprocess);
    auto* const shared = static_cast<effects::Common*>(show.addEffect("common", "Common"));
    for (const char* type : {"clear", "flash", "plasma", "postprocess"})
        static_cast<effects::CommonEffect*>(show.addEffect(type, type))->setCommon(shared);
    show.run();
    show.report(figures);
}

} // namespace

void zavex::bench::run(Figures& figures)
{
    keepMemory();
    measure(figures);
}
