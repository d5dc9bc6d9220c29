#pragma once

#include "vellum/vel_context.h"
#include "vellum/vel_pressable.h"

#include "mathbase/mb_splinebase.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zavex::vellum {

/** "square", "linear" or "smooth"; "unknown" for any other mode. */
std::string getModeName(mathbase::SplineFloat::InterpolationMode mode);

/**
 * An editor for a curve of keys: the values -1 at the bottom edge to 1 at the top over a span of
 * time.
 *
 * A left press on a key selects and drags it; it changes places with the keys that it is dragged
 * across and stays inside the control. Another button opens a menu, on a key to delete it,
 * elsewhere to add one there and to choose how values are formed between and outside the keys;
 * these modes leave the tangents as they are until the next edit of a key. With the keyboard focus
 * left and right move the selection, delete removes the selected key, and insert adds one halfway
 * to the next key, or at time 1 when there is none. Selection, drag and menu follow their keys when
 * others come or go.
 *
 * Dragging reports ACTION_SPLINE_CHANGED at every move; the menus and the keyboard report nothing.
 */
class Spline : public Pressable {
public:
    using Curve = mathbase::SplineFloat;

    Spline();
    Spline(const Spline&) = delete;
    Spline& operator=(const Spline&) = delete;
    ~Spline() override;

    Control* clone() override { return new Spline; }

    /**
     * Starts a curve of its own, smooth with automatic tangents. Reads "type", a mode's name, and a
     * key from each "item" sub-element ("x" the time, "y" the value; what is no number is 0).
     */
    void load(xml::IteratorConst& element) override;

    /** Nothing without a curve. */
    void draw(Area area, Area parent, Area clip) override;

    /** Sets the curve's interpolation to the mode of that name; no other text changes it. */
    virtual void setSplineType(const std::string& type);

    /**
     * Edits another curve, with nothing selected. Deletes the one before if it was owned.
     *
     * @param spline  May be null. Must outlive this control, or its next curve, unless it is owned.
     * @param own     Whether this control deletes the curve.
     */
    void setSpline(Curve* spline, bool own);

    /** The span of time that is shown, and that keys are dragged in. */
    void setTimeInterval(float start, float end);

    /** Stores the lower bound; the values shown are always -1 to 1. */
    void setValueInterval(float lowest, float highest);

    /**
     * Time and value, as x and y, at a point in the parent's coordinates. A control without width
     * or height stands for its left edge and the value 0.
     */
    mathbase::Vector2f getSplineSpace(const mathbase::Vector2f& point) const;

    /** The point in workspace coordinates for a time and a value: the inverse up to the origin. */
    mathbase::Vector2f getWorldSpace(const mathbase::Vector2f& timeAndValue) const;

protected:
    void hover(const Event& event) override;
    void endHover() override { mMouseOverIndex = -1; }
    void press(const Event& event) override;

    /** Opens the menu of the key under the pointer, or that of the place. */
    void pressOther(const Event& event) override;
    void drag(const Event& event) override;
    bool release(const Event& event) override;
    bool pressKey(const Event& event) override;
    void choose(const std::string& action) override;
    bool isHeld() const override { return mClicked >= 0; }
    void drop() override { mClicked = -1; }

    /** Any button, held or not: the key under the pointer is forgotten. */
    bool endsOn(display::MouseButton) const override { return true; }

    /** Also while inactive. */
    bool isUsable() const override { return true; }

    /** With its parent's focus: keys that come by the pointer's place alone are left. */
    bool takesKeys() const override { return !mParent || isFocusedChild(); }

    /** To be called after others changed the curve: its picture is made anew. */
    void curveChanged() { mDirty = true; }

private:
    class Scale;

    bool isKey(std::int32_t index) const;
    bool isFocusedChild() const;
    mathbase::Vector2f placeOf(std::int32_t key, const Scale& scale) const;
    std::int32_t keyAt(mathbase::Vector2f point) const;

    void chooseMode(const std::string& action);
    void moveSelection(std::int32_t keys);
    void addKey(const mathbase::SplineBaseKey<float>& key);
    void insertKey();
    void removeKey(std::int32_t removed);
    void removeSelected();

    void updateSamples(float width);
    void drawCurve(const Area& clip);
    void drawKeys(const Area& clip);
    void drawTangents(std::int32_t key, const Scale& scale, const Area& clip);
    const style::Color& keyColor(std::int32_t key, bool focused) const;

    bool m_ownSplineMemory = false;
    Curve* m_spline = nullptr;                      // owned if m_ownSplineMemory; or null
    std::vector<mathbase::Vector2f> m_cachedValues; // time and value of points along the curve
    bool mShowTangents = false;
    float mStartTime = 0.0f;
    float mEndTime = 1.0f;
    float mMinValue = -1.0f;
    bool mDirty = true;                    // m_cachedValues must be recomputed
    float mPointSize = 3.5f;               // radius of a key with the keyboard focus, pixels
    float mMouseOverX = 0.0f;              // local, at the last move
    std::int32_t mMouseOverIndex = 0;      // key under the pointer; -1 for none
    std::int32_t mSelection = -1;          // for the keyboard; -1 for none
    std::int32_t mClicked = -1;            // key being dragged; -1 for none
    std::int32_t mDeleteIndex = -1;        // key whose menu was opened last; -1 for none
    mathbase::Vector2f mAddPosition{0, 0}; // where mContext was opened, parent's coordinates
    Context mContext;                      // beside the keys
    Context mContext2;                     // on a key
};

} // namespace zavex::vellum
