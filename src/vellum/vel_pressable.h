#pragma once

#include "vellum/vel_control.h"

namespace zavex::vellum {

/**
 * What controls share that a pointer or a key works.
 *
 * Gives each event, after the children had it, to one function: a control overrides those that
 * mean something to it. Positions are in its own coordinates, (0, 0) at its top-left corner.
 *
 * A control that is not reachable hears of nothing but `endHover`, one that is not usable of that
 * and of the pointer's moves; either drops what it holds. Presses, turns of the wheel and keys that
 * a child used are not the control's. A choice from a menu is the control's alone and never reaches
 * its children.
 *
 * Each of these functions may report an action as the last thing it does: an observer may destroy
 * the control.
 */
class Pressable : public Control {
public:
    /** Drops what is held when the control is no longer usable. */
    void setInactive(bool inactive) override;

    /** As the base, and everything while the control is held. */
    bool acceptEvents(Event& event) override;

    /** As the base; the position is left in the control's own coordinates whatever children do. */
    int handleEvent(Event& event) override;
    void letGo() override;

protected:
    /** The pointer moved, inside the control or, seldom, beyond it. */
    virtual void hover([[maybe_unused]] const Event& event) {}

    /** The pointer went elsewhere, or is about to be looked for anew. Comes while held, too. */
    virtual void endHover() {}

    /** The left button went down. Sets what `isHeld` tells, where a press there is held. */
    virtual void press([[maybe_unused]] const Event& event) {}

    /** Another button went down. */
    virtual void pressOther([[maybe_unused]] const Event& event) {}

    /** The pointer moved while the control is held; unless overridden as any move. */
    virtual void drag(const Event& event) { hover(event); }

    /**
     * A button for which `endsOn` is true went up, anywhere. Drops what is held, first of all.
     *
     * @return  whether nothing around the control is to hear of it.
     */
    virtual bool release(const Event& event);

    /** @return  whether the wheel means anything to the control: then nothing around it turns. */
    virtual bool turnWheel([[maybe_unused]] const Event& event) { return false; }

    /** @return  whether the key means anything to the control: then nobody else hears of it. */
    virtual bool pressKey([[maybe_unused]] const Event& event) { return false; }

    /** @return  whether the character means anything to the control, as for a key. */
    virtual bool typeCharacter([[maybe_unused]] const Event& event) { return false; }

    /** @param action  The path of captions of what was chosen in a menu of this control. */
    virtual void choose([[maybe_unused]] const std::string& action) {}

    /** Whether a press is held: the control then gets the pointer wherever it goes. */
    virtual bool isHeld() const { return false; }

    /** Ends what is held, unreported. */
    virtual void drop() {}

    /** Whether letting go of a button concerns the control: the left one while it is held. */
    virtual bool endsOn(display::MouseButton button) const;

    /** Whether the user can have meant the control: while it and everything above it is visible. */
    virtual bool isReachable() const;

    /** Whether presses, the wheel and keys mean anything at present: while it is active. */
    virtual bool isUsable() const { return !mInactive; }

    /** Whether keys and characters that arrive are meant for the control: with the focus. */
    virtual bool takesKeys() const;

    /** Whether a position in the control's own coordinates lies inside it. */
    bool isInside(const Event& event) const;

    /**
     * Gives an event to the function for its kind.
     *
     * @param event    In the control's own coordinates.
     * @param handled  What a child made of it; the result, unless the control uses it up itself.
     */
    int route(const Event& event, int handled);

private:
    bool begin(const Event& event);
};

} // namespace zavex::vellum
