#pragma once

#include "vellum/vel_action.h"

#include <string>

namespace zavex::vellum {

class Context;
class Control;

/**
 * Observes controls. Registered with `Control::setCallback`, which does not take ownership: an
 * observer that dies before its controls takes itself away first (`Control::removeCallback`).
 *
 * Both functions may delete the control that calls them.
 */
class Callback {
public:
    Callback() = default;
    Callback(const Callback&) = default;
    Callback(Callback&&) = default;
    Callback& operator=(const Callback&) = default;
    Callback& operator=(Callback&&) = default;
    virtual ~Callback() = default;

    /**
     * An option of the pop-up menu `context` was chosen. `action` is the path of captions from the
     * menu to the option, joined by full stops ("spline.type.square").
     */
    virtual void contextAction([[maybe_unused]] Context* context,
                               [[maybe_unused]] const std::string& action)
    {}

    /** `control` is where the action started, which need not be the control that is observed. */
    virtual void controlAction([[maybe_unused]] Control* control, [[maybe_unused]] Action action) {}
};

} // namespace zavex::vellum
