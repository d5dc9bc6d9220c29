#pragma once

#include <string>

namespace zavex::vellum {

class Control;

/**
 * Makes controls by type name. Holds nothing itself: all factories share one registry of prototypes
 * that lives as long as the program.
 */
class ControlFactory {
public:
    /** Adds a prototype, which the registry owns from here on and only ever clones. */
    void addControlType(Control* prototype);

    /**
     * A clone of the prototype that was registered first with exactly this type name, owned by the
     * caller; null when there is none.
     */
    Control* create(const std::string& type);
};

/** The factory that `Control::load` asks for children. */
extern ControlFactory controlFactory;

/** Makes all control types known to `controlFactory`; does nothing the second time. */
void registerControls();

} // namespace zavex::vellum
