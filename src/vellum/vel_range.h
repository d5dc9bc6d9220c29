#pragma once

#include "display/dis_key.h"

#include <optional>

namespace zavex::vellum {

/** A value that the user moves between two bounds, 0 and 1 at the start. */
class Range {
public:
    /** Bounds in either order, each cut to -1e9..1e9. The value keeps its place between them. */
    void setBounds(float first, float second);

    /**
     * Cuts `unit` to 0..1, the lower and the upper bound. What is not a number changes nothing.
     *
     * @return whether the value changed.
     */
    bool setUnit(float unit);

    /** As `setUnit`, with a value between the bounds. */
    bool setValue(float value);

    /** The place between the bounds, in 0..1. */
    float unit() const { return mUnit; }
    float value() const;
    float lower() const { return mLower; }
    float upper() const { return mUpper; }

    /**
     * Where a key moves the place to, which may lie beyond 0..1: arrows by a twentieth, page keys
     * by a fifth, home and end to the bounds; empty for any other key.
     */
    std::optional<float> unitAfterKey(display::Key key) const;

    /** Where the wheel moves the place to, by a twentieth for each step. */
    float unitAfterWheel(float steps) const;

private:
    float mLower = 0.0f;
    float mUpper = 1.0f;
    float mUnit = 0.0f;
};

} // namespace zavex::vellum
