#pragma once

#include "cadenza/cad_plugin.h"
#include "mathbase/mb_splinebase.h"
#include "mathbase/mb_vector2.h"
#include "mathbase/mb_vector3.h"
#include "vellum/vel_callback.h"
#include "vellum/vel_context.h"
#include "vellum/vel_pressable.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zavex::cadenza {

/**
 * An animated colour: a gradient of keys over the effect's span, from 0 at its start to 1 at its
 * end, and the lane that edits it. Kept as three curves whose keys have the same times in the same
 * order.
 *
 * In a script file `<key time="0.5" r="1" g="0.5" b="0"/>`, in the order of time: keys that a drag
 * left out of order are written as they will stand when they are loaded. Keys at one time keep
 * their order.
 *
 * The lane shows the gradient in swatches and a round marker for each key. A left press on a key
 * drags it. Across a neighbour the drag goes on with the neighbour, so that the colours keep their
 * order; at the ends of the lane the key stays. Tangents follow a drag at the next key that is
 * added, deleted or recoloured. Another button opens a menu: beside the keys to add one that leaves
 * the gradient as it is, on a key to recolour or delete it.
 *
 * A double click recolours too, in the screen's colour chooser: "picker" inside "picker_window",
 * both shared by all gradients; without a "picker" nothing happens. The key is marked and takes
 * every colour that is picked until "picker_ok" is pressed or another gradient takes the picker.
 */
class Color final : public PluginBase, public vellum::Pressable, public vellum::Callback {
public:
    Color();
    Color(const Color&) = delete;
    Color& operator=(const Color&) = delete;

    /** Takes itself away from the picker of the screen it is on. */
    ~Color() override;

    vellum::Control* getControl() override { return this; }
    void load(xml::IteratorConst& it) override;
    void save(xml::Iterator& it) const override;

    /** Also observes the button that closes the colour picker, where the screen has one. */
    void setupControl(float width) override;

    /** An empty gradient, owned by the caller. */
    vellum::Control* clone() override;

    /** Recolours a key when the picker changes, and ends that when the picker is closed. */
    void controlAction(vellum::Control* control, vellum::Action action) override;

    /**
     * Red, green and blue `time` seconds after the effect's start; normally 0..1, not clamped.
     * Black without keys.
     */
    mathbase::Vector3f get(float time) const;

    /** Also while a key is dragged or under the pointer. */
    bool acceptEvents(vellum::Event& event) override;
    void draw(Area area, Area parent, Area clip) override;

protected:
    void hover(const vellum::Event& event) override { mHighlight = keyAt(event.mousePos); }
    void endHover() override;
    void press(const vellum::Event& event) override;

    /** Opens the menu of the key under the pointer, or that of the place. */
    void pressOther(const vellum::Event& event) override;

    /** Moves the dragged key; once it has passed a neighbour, that one is dragged on. */
    void drag(const vellum::Event& event) override;
    void choose(const std::string& action) override;
    bool isHeld() const override { return mPushed; }
    void drop() override { mPushed = false; }

    /** Any button. */
    bool endsOn(display::MouseButton) const override { return mPushed; }

    /** Also while inactive. */
    bool isUsable() const override { return true; }

private:
    using Curve = mathbase::SplineFloat;

    std::vector<int> loadedOrder() const;
    bool isKey(std::int32_t index) const;
    mathbase::Vector3f colorAt(float position) const;
    float positionOf(float x) const;
    Area markerOf(std::int32_t key, const Area& area) const;
    std::int32_t keyAt(mathbase::Vector2f point) const;

    void addKey();
    void removeKey(std::int32_t removed);
    void openPicker();
    void takeColor(vellum::Control* source);
    void followPicker();

    void drawSwatches(const Area& area, const Area& clip);
    void drawKeys(const Area& area, const Area& clip);
    const vellum::style::Color& keyColor(std::int32_t key) const;

    Curve mR;
    Curve mG;
    Curve mB;
    std::int32_t mHighlight = -1;         // key under the pointer or being dragged; -1: none
    std::int32_t mSelectedIndex = -1;     // key being recoloured in the picker; -1: none
    bool mPicked = false;                 // the picker was changed since it was opened for that key
    bool mHearsOk = false;                // observes the button that closes the picker
    bool mPushed = false;                 // the key mHighlight is being dragged
    mathbase::Vector2f mPushedPos{0, 0};  // where the drag started
    mathbase::Vector2f mContextPos{0, 0}; // where the menu was opened
    vellum::Context mContextAdd;          // "context.add"
    vellum::Context mContextDel;          // "context.edit", "context.delete"
};

} // namespace zavex::cadenza
