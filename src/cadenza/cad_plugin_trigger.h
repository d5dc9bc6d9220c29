#pragma once

#include "cadenza/cad_plugin.h"
#include "mathbase/mb_vector2.h"
#include "vellum/vel_context.h"
#include "vellum/vel_look.h"
#include "vellum/vel_pressable.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace zavex::cadenza {

/**
 * Timed events (beats, cuts): actions, each a regular series of firings. `update` counts how many
 * firings were passed since the update before; a step back in time starts all series over.
 *
 * The lane shows each firing as a thin bar and flashes at a firing. The bars of the first action
 * can be dragged, with a shift key by a tenth: the first one moves the series, every other one
 * stretches the delay, down to 0.01 seconds. The other button opens a menu whose "adjust" makes the
 * series end at the firing nearest to where it was opened. Opening it, or hiding the lane, ends a
 * drag.
 *
 * In a script file `<action start="15" delay="0.5" repeat="31"/>`, times in seconds; a missing or
 * empty delay or repeat is 1. A script that holds no action gives a single one that does not fire
 * until time has gone back.
 */
class Trigger final : public PluginBase, public vellum::Pressable {
public:
    /** A series of firings at `mStart` + j * `mDelay`, j in [0, `mRepeat`). */
    struct ActionData {
        float mStart = 0.0f;       // seconds
        float mDelay = 1.0f;       // seconds; when it is not positive all firings fall on mStart
        std::uint32_t mRepeat = 1; // number of firings; a negative one in a file is none
        std::uint32_t mCount = 0;  // firings already counted; a frame may pass more than mRepeat
    };

    Trigger();

    vellum::Control* getControl() override { return this; }
    void load(xml::IteratorConst& it) override;
    void save(xml::Iterator& it) const override;
    void setupControl(float width) override;

    /** Counts the firings that lie before `time` and were not counted yet. */
    void update(float time) override;

    /** This object: a plugin is never duplicated. */
    vellum::Control* clone() override { return this; }

    /** The number of firings counted by the latest update; 0 for a time before that update. */
    std::uint32_t get(float time) const;

    /** Also while a bar is under the pointer or dragged. */
    bool acceptEvents(vellum::Event& event) override;
    void draw(Area area, Area parent, Area clip) override;

protected:
    void hover(const vellum::Event& event) override;
    void endHover() override;
    void press(const vellum::Event& event) override;
    void pressOther(const vellum::Event& event) override;
    void drag(const vellum::Event& event) override;
    void choose(const std::string& action) override;
    bool isHeld() const override { return mPushed; }
    void drop() override { mPushed = false; }

    /** Any button. */
    bool endsOn(display::MouseButton) const override { return mPushed; }

    /** Also while inactive. */
    bool isUsable() const override { return true; }

private:
    void restart(float time);
    static std::uint32_t fire(ActionData& action, float time);

    void adjustRepeat();

    void drawBack(const Area& area);
    void drawBars(const ActionData& action, const Area& area, const Area& clip);

    std::vector<std::unique_ptr<ActionData>> mAction;
    float mLastTime = 0.0f;               // of the latest update, seconds
    std::uint32_t mCurrent = 0;           // firings counted in the latest update
    float mDiff = 0.0f;                   // flash of the lane: 1 at a firing, falls to 0
    float mHit = 0.0f;                    // time from which mDiff falls on, seconds
    std::int32_t mHighlight = -1;         // firing of the first action under the pointer; -1: none
    bool mPushed = false;                 // that firing is being dragged
    vellum::Context mContext;             // "trigger.adjust"
    mathbase::Vector2f mStretchPos{0, 0}; // where the menu was opened
};

} // namespace zavex::cadenza
