#pragma once

#include "vellum/vel_action.h"
#include "vellum/vel_event.h"
#include "vellum/vel_style.h"

#include "mathbase/mb_box.h"
#include "mathbase/mb_vector2.h"
#include "mathbase/mb_vector4.h"

#include <memory>
#include <string>
#include <vector>

namespace zavex::display {
class DisplayGL;
}

namespace zavex::xml {
class IteratorConst;
}

namespace zavex::vellum {

class Callback;
class Context;
class ControlWatch;
class Render;
class Workspace;

/**
 * A node of the tree that makes up the screen: a rectangle with colours, children and observers.
 *
 * A control owns its children. One that is destroyed while it is somebody's child takes itself out
 * of its parent first, so a child that is a member of its parent's class needs no special care. A
 * control must not be destroyed while it is the workspace's open context menu.
 *
 * Coordinates are pixels with y growing downwards. Only controls below a workspace have a display,
 * a style document and something to draw with. Every function that takes client code in
 * (`handleEvent`, `sendAction`, `sendContextAction`) bears that code deleting the control.
 */
class Control {
public:
    using Area = mathbase::Box2;
    using style = vellum::style; // NOLINT(readability-identifier-naming)

    Control();
    Control(const Control&) = delete;
    Control(Control&&) = delete;
    Control& operator=(const Control&) = delete;
    Control& operator=(Control&&) = delete;

    /** Destroys all children. Observers are not owned. */
    virtual ~Control();

    /** A default-constructed object of the same class, owned by the caller. */
    virtual Control* clone();

    /** Name of the class, the key of the control factory. */
    virtual const std::string& getType() const;

    /** The display of the workspace above; null without one. */
    virtual display::DisplayGL* getDisplay() const;

    /** Sets the parent without touching anyone's list of children. Null makes this a root. */
    virtual void setParent(Control* parent);
    virtual Control* getParent() const;

    /** The topmost control of this tree; this one when it has no parent. */
    virtual Control* getRoot();

    virtual int getChildCount() const;

    /** The child at `index` of the stacking order, bottom first; null when out of range. */
    virtual Control* getChild(int index) const;

    /** The child at `index` of the order of insertion; null when out of range. */
    virtual Control* getOrder(int index) const;

    /**
     * A colour from pairs of hexadecimal digits without prefix: red, green, blue, alpha. Missing
     * components keep those of (0, 0, 0, 1), a missing second digit and any other character count
     * as 0.
     */
    virtual mathbase::Vector4f hex2vec(const std::string& text) const;

    /**
     * Fills the control from the element that `element` stands on: identifier, visibility, child
     * controls (made by `controlFactory`, each given its style and then its own element), rectangle
     * and colours. Without an "area" sub-element the control becomes maximized. Throws Exception
     * when this control lies inside more than 256 others, and when the outermost `load` under way
     * has come to read more than 100,000 elements, those of styles counted as often as they serve.
     */
    virtual void load(xml::IteratorConst& element);

    /** Takes the colours of the "color" sub-elements; those with an unknown name are ignored. */
    virtual void loadStyle(xml::IteratorConst& element);

    /** The elements called `name` in the workspace's style document; none without a workspace. */
    virtual xml::IteratorConst getStyle(const std::string& name) const;

    virtual const std::string& getId() const;

    /** Sets the identifier. */
    virtual void setName(const std::string& name);
    virtual const std::string& getCaption() const;
    virtual void setCaption(const std::string& caption);

    /** An inactive control is greyed out and ignores clicks. */
    virtual void setInactive(bool inactive);
    virtual bool getInactive() const;

    /** Showing a control also brings it to the top of its parent and onto the focus path. */
    virtual void setVisible(bool visible);
    virtual bool getVisible() const;

    /** The rectangle in the parent's coordinates, moved by the parent's scroll offset; the whole
        parent, from (0, 0), when maximized. */
    virtual Area getArea() const;

    /** The rectangle in workspace coordinates. */
    virtual Area getAreaWorld() const;

    /** Lays the children out. The base only passes the call on to every child. */
    virtual void setArea();

    /** Stores the rectangle, before any scroll offset, and lays the children out. */
    virtual void setArea(Area area);

    /** Moves the stored rectangle's top-left corner, keeping its size. */
    virtual void setPosition(mathbase::Vector2f position);

    /** The scroll offset of all children, in pixels. */
    virtual mathbase::Vector2f getOffset() const;
    virtual void setOffset(mathbase::Vector2f offset);
    virtual bool getMaximized() const;
    virtual void setMaximized(bool maximized);

    /** The bounding box of this rectangle and the children's, each as its `getArea` gives it. */
    virtual Area getOccupiedArea() const;

    /**
     * Takes ownership of `control` and focuses it, which brings it to the top. A control that is a
     * child elsewhere leaves its old parent. When there is no memory for that, nothing changes and
     * the control stays its owner's; it may be destroyed whenever a call throws, for a control that
     * goes leaves its parent.
     *
     * @param control  Must not be null ("control!=0").
     * @param index    Position in both orders, in 0..child count; -1 is the end. Must be valid
     *                 ("index<=getChildCount()").
     */
    virtual void addControl(Control* control, int index = -1);

    /** Destroys the child at `index` of the stacking order; nothing when out of range. */
    virtual void deleteControl(unsigned index);
    virtual void deleteControls();

    /** The first control called `name` in this subtree, depth first, parents first; or null. */
    virtual Control* findControl(const std::string& name);

    virtual void clearCallbacks();

    /** Adds an observer, which is not owned. One that is added twice is called twice. */
    virtual void setCallback(Callback* callback);

    /** Takes an observer away, however often it was added. */
    void removeCallback(const Callback& callback);
    bool isObservedBy(const Callback& callback) const;

    /**
     * Reports an action to the observers of the nearest control upwards that has any.
     *
     * @param source  Where the action started; null means this control.
     */
    virtual void sendAction(Action action, Control* source = nullptr);

    /** Reports the choice of a menu option to this control's own observers. */
    virtual void sendContextAction(Context* context, const std::string& action);

    /**
     * Whether the control wants the event although the point may lie outside its rectangle.
     * Controls that are being dragged override it. The event is in the parent's coordinates.
     */
    virtual bool acceptEvents(Event& event);

    /**
     * Routes the event: keyboard events down the focus path, all others to the topmost child that
     * accepts them. Maintains hover state and focus.
     *
     * @param event  In the parent's coordinates; left in this control's own.
     * @return what the child that received the event returned (`display::Listener::Action` bits);
     *         0 when there was none.
     */
    virtual int handleEvent(Event& event);

    /** What to draw with. Must be below a workspace ("mParent!=0"). */
    virtual Render& getRender();

    /** What to measure text with, for queries. Must be below a workspace ("mParent!=0"). */
    const Render& getRender() const;

    /** The child that has the keyboard focus; or null. */
    virtual Control* getFocus() const;

    /**
     * Puts this control on the focus path from the root and clears the focus of every other branch.
     * The path leads through lists of children alone: a pop-up menu leaves its owner's focus as it
     * is.
     *
     * @param control  The child to focus and bring to the top; null focuses none of the children.
     */
    virtual void setFocus(Control* control);

    /** Takes the focus from the whole subtree, going down the one path that has it. */
    virtual void clearFocus();

    /** Opens a pop-up menu. A menu without a parent gets this control as its owner. */
    virtual void setContext(Context* context);

    /** Closes the open pop-up menu. */
    virtual void resetContext();

    /**
     * Draws the children. All rectangles are in workspace coordinates.
     *
     * @param area    This control's rectangle, for subclasses to fill.
     * @param parent  The parent's rectangle.
     * @param clip    The visible part of `area`.
     */
    virtual void draw(Area area, Area parent, Area clip);

    /** Ends every drag in this subtree, unreported, once the control was hidden. */
    virtual void letGo();

    /** The workspace that the root of this tree is; null without one. */
    virtual Workspace* getWorkspace();

    // What those in or below the control ask it.

    /** Whether the user can drag boxes about on the control. */
    virtual bool letsBoxesMove() const { return false; }

    /** Whether events reach the tree, too, while a pop-up menu of the control is open. */
    virtual bool letsEventsThrough() const { return false; }

    /** A child changed its height. Lays the children out. */
    virtual void childResized() { setArea(); }

    /**
     * A scroll area moves the control's bottom-right corner.
     *
     * @param corner  In the parent's coordinates.
     * @return  whether that is possible; unless overridden it is not.
     */
    virtual bool moveCorner([[maybe_unused]] mathbase::Vector2f corner) { return false; }

    /**
     * A choice came up from `menu`, whose owner this control is: handles the event and reports it
     * to the control's observers.
     */
    virtual void takeChoice(Context& menu, Event& event);

protected:
    /** Whether children are drawn even where they are out of sight. */
    virtual bool drawsAllChildren() const { return false; }

    /**
     * Makes `child` the last of this control's own children, whatever the `addControl` of a
     * subclass does with it. Destroys it when there is no memory for that.
     *
     * @return  `child`.
     */
    template <typename Child>
    Child* addOwn(std::unique_ptr<Child> child)
    {
        Control::addControl(child.get());
        return child.release();
    }

    /** Called by `load` for each "area" sub-element of a child it made; `area` stands on it. */
    virtual void loadChildArea(Control& child, xml::IteratorConst& area);

    Area mArea{0, 0, 0, 0}; // parent's coordinates, before the parent's scroll offset
    style mStyle;
    std::string mId = "control";
    std::string mCaption = "control";
    std::string mType = "control";
    Control* mParent = nullptr;         // not owned
    Control* mFocus = nullptr;          // the child with the keyboard focus; not owned
    Control* mControlClicked = nullptr; // for subclasses; not owned
    mathbase::Vector2f mOffset{0, 0};   // pixels
    std::vector<Control*> mChild;       // owned; stacking order, top last
    std::vector<Control*> mOrder;       // the same children in order of insertion
    std::vector<Callback*> mCallback;   // not owned
    bool mMouseOver = false;
    bool mInactive = false;
    bool mVisible = true;
    bool mMaximized = false;
    Render* mRenderCache = nullptr; // found through the parents on first use; not owned

private:
    friend class ControlWatch;

    class LoadCount;

    bool hover(const Event& event);
    bool resetChildren(Event& event);
    void focusChildAt(Event& event);
    Control* receiverOf(Event& event, bool inside);
    void forgetRender();
    void releaseControl(Control* control);
    void destroyControl(Control* control);
    void loadChildren(xml::IteratorConst& element);
    void loadChild(xml::IteratorConst& element);
    void loadArea(xml::IteratorConst& element);

    Control* mOwner = nullptr;      // whose list of children holds this control
    ControlWatch* mWatch = nullptr; // the watch made last
    LoadCount* mLoading = nullptr;  // of the outermost load, when it is this control's
};

} // namespace zavex::vellum
