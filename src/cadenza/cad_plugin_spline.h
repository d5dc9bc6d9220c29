#pragma once

#include "cadenza/cad_plugin.h"
#include "mathbase/mb_splinebase.h"
#include "vellum/vel_spline.h"

namespace zavex::cadenza {

/**
 * One animated number: a curve of keys over the effect's span, from 0 at its start to 1 at its end,
 * and the lane that edits it.
 *
 * In a script file:
 *
 *     <attributes type="smooth" before="constant" after="constant"/>
 *     <key time="0.5" value="1"/>
 *
 * "type" is "square", "linear" or "smooth"; "before" and "after" are "constant", "repeat" or "add".
 * Keys at one time keep the order of the file, so that a hard cut stays one. Tangents are not
 * stored. The modes are set after the keys were added and recompute nothing, so loaded keys have
 * the tangents of the modes before.
 */
class Spline final : public PluginBase, public vellum::Spline {
public:
    Spline();

    vellum::Control* getControl() override { return this; }
    void load(xml::IteratorConst& it) override;
    void save(xml::Iterator& it) const override;
    void setupControl(float width) override;

    /** This object: a plugin is never duplicated. */
    vellum::Control* clone() override { return this; }

    /** Draws the curve's editor and the plugin's name over it. */
    void draw(Area area, Area parent, Area clip) override;

    /** The curve's value `time` seconds after the effect's start; 0 without keys. */
    float get(float time) const;

private:
    mathbase::SplineFloat mSpline;
};

} // namespace zavex::cadenza
