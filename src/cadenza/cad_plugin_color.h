#pragma once

#include "cadenza/cad_plugin.h"
#include "mathbase/mb_splinebase.h"
#include "mathbase/mb_vector2.h"
#include "mathbase/mb_vector3.h"
#include "vellum/vel_callback.h"
#include "vellum/vel_context.h"
#include "vellum/vel_control.h"

#include <cstdint>

namespace zavex::cadenza {

/**
 * An animated colour: a gradient of keys over the effect's span, from 0 at its start to 1 at its
 * end. Kept as three curves whose keys have the same times in the same order.
 *
 * In a script file `<key time="0.5" r="1" g="0.5" b="0"/>`.
 */
class Color final : public PluginBase, public vellum::Control, public vellum::Callback {
public:
    Color();

    vellum::Control* getControl() override { return this; }
    void load(xml::IteratorConst& it) override;
    void save(xml::Iterator& it) override;

    /** Also observes the button that closes the colour picker, where the screen has one. */
    void setupControl(float width) override;

    /** An empty gradient, owned by the caller. */
    vellum::Control* clone() override;

    /** Ends the recolouring of a key when the picker is closed. */
    void controlAction(vellum::Control* control, vellum::Action action) override;

    /**
     * Red, green and blue `time` seconds after the effect's start; normally 0..1, not clamped.
     * Black without keys.
     */
    mathbase::Vector3f get(float time) const;

    bool acceptEvents(vellum::Event& event) override;

private:
    using Curve = mathbase::SplineFloat;

    Curve mR;
    Curve mG;
    Curve mB;
    std::int32_t mHighlight = -1;         // key under the pointer or being dragged; -1: none
    std::int32_t mSelectedIndex = -1;     // key being recoloured in the picker; -1: none
    bool mPushed = false;                 // that key is being dragged
    mathbase::Vector2f mPushedPos{0, 0};  // where the drag started
    mathbase::Vector2f mContextPos{0, 0}; // where the menu was opened, parent's coordinates
    vellum::Context mContextAdd;          // "context.add"
    vellum::Context mContextDel;          // "context.edit", "context.delete"
    vellum::Control* mPickerOk = nullptr; // the observed button; not owned
};

} // namespace zavex::cadenza
