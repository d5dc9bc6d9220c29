#pragma once

#include "vellum/vel_control.h"

#include <string>

namespace zavex::xml {
class Iterator;
class IteratorConst;
} // namespace zavex::xml

namespace zavex::cadenza {

/**
 * One animated parameter of an effect: a curve, a list of timed events or a colour gradient.
 *
 * Every plugin is also a control, one lane of its effect's bar. It is a member of its effect, which
 * registers it under a name (`Effect::addPlugin`); nothing else owns or deletes it. Times are
 * seconds since the effect's start.
 */
class PluginBase {
public:
    /** @param type  The kind of plugin: "spline", "trigger" or "color". */
    explicit PluginBase(std::string type);
    PluginBase(const PluginBase&) = default;
    PluginBase(PluginBase&&) = default;
    PluginBase& operator=(const PluginBase&) = default;
    PluginBase& operator=(PluginBase&&) = default;
    virtual ~PluginBase() = default;

    /** The control part of this object. */
    virtual vellum::Control* getControl() = 0;

    /**
     * Adds what a script file holds to the plugin's data; what is there already stays. Malformed
     * numbers read as 0, unknown words as the plainest mode; nothing is reported.
     *
     * @param it  Stands on the plugin's element, whose children are read.
     */
    virtual void load(xml::IteratorConst& it) = 0;

    /**
     * Writes the plugin's data.
     *
     * @param it  Fresh, over the children of the plugin's element.
     */
    virtual void save(xml::Iterator& it) const = 0;

    /**
     * Takes the colours of the style document's element named after the kind, if there is one, and
     * makes the control as wide as the effect's bar.
     *
     * @param width  Pixels of the bar, see `setWidth`.
     */
    virtual void setupControl([[maybe_unused]] float width) {}

    /** One frame; called before the effect draws, so before `get` is asked for the same time. */
    virtual void update([[maybe_unused]] float time) {}

    /**
     * Tells how long the effect lasts, which `get` needs: by the pixels of its bar. A plugin begins
     * with the 10 seconds of a new effect.
     */
    void setWidth(float width);

    std::string mType; // the kind, also the "type" in the script file
    std::string mName; // the name it is registered under, the key in the script file

protected:
    /** What `setupControl` does for every kind. */
    void fitControl(float width);

    /** How long the effect lasts, in seconds: the lane `area` is as wide as its bar. */
    static float duration(const vellum::Control::Area& area);

    /**
     * Where a time lies on the axis of a plugin's data: 0 at the effect's start and 1 at its end,
     * for a lane that begins at 0. 0 when the effect does not last.
     */
    static float positionAt(const vellum::Control::Area& area, float time);
};

} // namespace zavex::cadenza
