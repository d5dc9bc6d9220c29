#pragma once

#include "vellum/vel_frame.h"
#include "vellum/vel_frame_holder.h"
#include "vellum/vel_number_text.h"

namespace zavex::vellum {

/**
 * A scale strip with ticks and labels above a frame for content, across which it draws two marker
 * lines and one that follows the pointer.
 *
 * Everything that is added goes into the content frame, which is transparent. The value under the
 * pointer stands in the strip, where labels near it fade away. Units are the caller's, seconds on a
 * timeline. Intervals that are not positive draw no ticks; ticks are at least a pixel apart.
 */
class Ruler : public FrameHolder<Frame, Frame> {
public:
    Ruler();

    Control* clone() override { return new Ruler; }

    /** As the base; places the content even where nobody lays the ruler out. */
    void load(xml::IteratorConst& element) override;

    using Frame::setArea;

    /** Places the content frame below the strip. */
    void setArea() override;
    void draw(Area area, Area parent, Area clip) override;

    /** @param scale  Units per pixel. */
    virtual void setScale(float scale);

    /** @param interval  Units between labelled ticks. */
    virtual void setInterval(float interval);

    /** @param count  Small ticks per labelled interval. */
    virtual void setSubIntervals(float count);

    /** Places the first marker line. @param x  Pixels from the left edge; hidden unless positive.
     */
    virtual void setShadow(float x);

    /** Places the second marker line. @param x  Pixels from the left edge; hidden unless positive.
     */
    virtual void setShadow2(float x);

protected:
    void hover(const Event& event) override { mX = event.mousePos.x; }

    float mScale = 0.1f;         // units per pixel
    float mInterval = 10.0f;     // units between labelled ticks
    float mSubIntervals = 10.0f; // small ticks per labelled interval
    float mHeight = 25.0f;       // of the strip, pixels
    float mX = 5.0f;             // of the pointer, from the left edge, pixels
    float mShadowX = -1.0f;      // of the first marker, from the left edge, pixels
    float mShadowX2 = -1.0f;     // of the second marker, from the left edge, pixels

private:
    void drawTick(const Area& area, float x, float top);
    void drawLabel(const Area& area, float x);
    void drawReadOut(const Area& area);
    void drawMarkers(const Area& area);
    float labelMiddle(const Area& area) const;

    NumberText mNumber;
};

} // namespace zavex::vellum
