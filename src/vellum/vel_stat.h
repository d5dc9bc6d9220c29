#pragma once

#include "vellum/vel_number_text.h"
#include "vellum/vel_pressable.h"

#include "mathbase/mb_vector2.h"

#include <cstddef>
#include <vector>

namespace zavex::vellum {

/**
 * A graph of a value over time that scrolls to the left, one pixel a sample, with a read-out of the
 * value at the pointer's height.
 *
 * A sample is the average of what was added in one period of the display's clock, so that adding
 * more often does not scroll faster. The scale follows the highest sample smoothly. Adding values
 * and drawing need a workspace above.
 */
class Stat : public Pressable {
public:
    static constexpr std::size_t HISTORY = 2000; // samples

    Stat();

    Control* clone() override { return new Stat; }
    bool acceptEvents(Event& event) override;

    /** The background fills the visible part; the graph spans the whole control. */
    void draw(Area area, Area parent, Area clip) override;

    /** Adds to the current period, and ends it when its time is over. */
    virtual void addValue(float value);

    /** @param seconds  Length of a period. */
    virtual void setInterval(float seconds);

    /** Ends the current period when its time is over and anything was added to it. */
    void evaluate();

protected:
    void hover(const Event& event) override;

    float mInterval = 0.2f;             // seconds
    float mStartTime = 0.0f;            // of the current period, seconds
    float lTime = 0.0f;                 // NOLINT: of the previous evaluation, seconds
    mathbase::Vector2f mMousePos{0, 0}; // of the read-out, workspace coordinates
    float mCurrent = 0.0f;              // value at the pointer's height; -1 without a pointer
    std::vector<float> mValue;          // newest first
    float mCurrentValue = 0.0f;         // sum of what was added in the current period
    float mCurrentIndex = 0.0f;         // how many values that were
    float mValueMax = 0.0f;             // what the top of the graph stands for
    float mValueMaxWannabe = 0.0f;      // the highest value of the history

private:
    void store(float sample);
    void drawGraph(const Area& area, const Area& clip);
    void drawReadOut(const Area& area);

    NumberText mNumber;
};

} // namespace zavex::vellum
