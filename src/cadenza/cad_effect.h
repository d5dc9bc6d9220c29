#pragma once

#include "cadenza/cad_document.h"
#include "vellum/vel_context.h"
#include "vellum/vel_layout_stack.h"

#include <string>
#include <vector>

namespace zavex::am {
class SaveSet;
}

namespace zavex::display {
class DisplayGL;
}

namespace zavex::xml {
class XmlParser;
}

namespace zavex::cadenza {

class PluginBase;

/**
 * One visual part of the show: a span of demo time, plugins that animate it, a drawing function.
 *
 * Made by a factory, named and kept in order by `Cadenza::addEffect`, stored in the script file
 * "script/TYPE.NAME.xml" below the working directory. Switched off while `getInactive`.
 *
 * Also the bar that stands for it on a timeline: a header with a handle at either end, below it one
 * lane for each plugin. Dragging a handle changes the start or the end, dragging the header moves
 * the effect in time, with a shift key by a tenth; each reaches the lanes at once. A drag never
 * makes a bar start before 0 or become narrower than two seconds. The other button opens a menu on
 * the header that switches the effect off or on and locks the bar, which keeps it from being
 * dragged and marked. Opening it, or hiding the bar, ends a drag.
 *
 * Plugins are members of the concrete effect. Each is also a child control of this one and leaves
 * it when it is destroyed, before the base class destroys the children that remain.
 */
class Effect : public vellum::LayoutStack {
public:
    Effect();

    /** Null: an effect is not cloned. */
    vellum::Control* clone() override { return nullptr; }

    /** The header alone while locked. */
    Area getOccupiedArea() const override;

    /** Also while the header or a handle is under the pointer or dragged. */
    bool acceptEvents(vellum::Event& event) override;

    /** Draws the bar. */
    void draw(Area area, Area parent, Area clip) override;

    /**
     * Creates what the effect needs for drawing. Called once, after the script was loaded and
     * while the display is open.
     */
    virtual void setup() = 0;

    /** Updates the plugins in the order they were added. @param time  Seconds since the start. */
    virtual void update(float time);

    /**
     * Draws one frame.
     *
     * @param time      Seconds since the effect's start; inside the span, so positive.
     * @param delta     Seconds since the frame before; 0 while paused.
     * @param progress  `time` divided by the effect's duration, inside 0..1.
     */
    virtual void draw(float time, float delta, float progress) = 0;

    /** Makes every lane as wide as the bar and stacks them again. Call when the bar has changed. */
    virtual void updatePlugins();

    /**
     * Draws once what the effect will draw, where nobody sees it: what is made for a first drawing
     * is then there before the song starts. Called after every effect was set up.
     *
     * May leave anything in the back buffer and in the display's states. What the frames draw must
     * be the same as without this call. Does nothing unless overridden.
     */
    virtual void rehearse() {}

    /** @param type  The type its factory is registered under. */
    void setIdentity(const std::string& type, const std::string& name);

    /** Demo seconds. Tells the plugins how long the effect lasts. */
    void setSpan(float start, float end);

    /**
     * Registers a plugin; called by the concrete effect's constructor.
     *
     * @param name    Key of the plugin's data in the script file; unique within the effect.
     * @param plugin  Not owned; a member of the concrete effect.
     */
    void addPlugin(const std::string& name, PluginBase& plugin);

    /**
     * Keeps the display, then reads the script file; without one, or when its root element is not
     * "effect", everything stays as it is.
     *
     * Throws `Exception` with the file's name when the file is there and cannot be read, with the
     * position when it is malformed. A file that holds more than will be saved is kept in a copy
     * when it is saved first, see `DocumentFile`.
     *
     * @param display  Not owned; used by the concrete effects.
     */
    void load(display::DisplayGL* display);
    using LayoutStack::load;

    /**
     * Writes the script file, as `DocumentFile` does. A failure is logged with the file's name and
     * the reason and leaves the old file as it was.
     */
    void save();

    /** Adds the script file to a save of several files. */
    void save(am::SaveSet& set);

    /**
     * Builds the bar: its colours (those of the style document's element "effect"), its area on
     * the timeline, its header and the plugins' lanes. Call once, when the script is loaded and
     * the bar is on its timeline.
     *
     * A bar that is locked by then has the height of its header until it is unlocked. Times beyond
     * 11 days either way are shown as that, those that are no numbers as 0.
     */
    void setupControl();

    /** Whether the effect is drawn at demo time `time`: strictly inside its span. */
    bool covers(float time) const { return mStart < time && time < mEnd; }

    const std::string& getName() const { return mName; }

    /** The script file, relative to the working directory; empty before it was loaded or saved. */
    const std::string& getFilename() const { return mFilename; }

    float getStart() const { return mStart; }
    float getEnd() const { return mEnd; }

protected:
    void hover(const vellum::Event& event) override;
    void endHover() override;
    void press(const vellum::Event& event) override;

    /** The right one opens the menu of the header. */
    void pressOther(const vellum::Event& event) override;
    void drag(const vellum::Event& event) override;
    void choose(const std::string& action) override;
    bool isHeld() const override { return mMouseDown; }
    void drop() override { mMouseDown = false; }

    /** Also while the effect is off. */
    bool isUsable() const override { return true; }

    enum Grip : int { NOTHING = 0, START_HANDLE = 1, HEADER = 2, END_HANDLE = 3 };

    static constexpr float HEADER_WIDTH = 200.0f;
    static constexpr float HEADER_HEIGHT = 20.0f;

    std::string mType; // of its factory; `getType` is the type of the control
    std::string mName;
    std::string mFilename;                  // set when the script is loaded or saved
    DocumentFile mScript;                   // the file of that name
    float mStart = 0.0f;                    // demo seconds
    float mEnd = 0.0f;                      // demo seconds
    display::DisplayGL* mDisplay = nullptr; // not owned
    std::vector<PluginBase*> mPlugin;       // not owned; in order of registration
    int mMouseOverIndex = NOTHING;          // the `Grip` under the pointer, or being dragged
    bool mMouseDown = false;                // the left button is held on the header
    vellum::Context mContext;               // "on/off", "lock/unlock"
    bool mLocked = false;

private:
    void nameFile();
    void readScript(const xml::XmlParser& parser);
    void readPlugins(const xml::XmlParser& parser);
    void writeScript(xml::XmlParser& parser);

    bool isFocusedBar() const;
    int gripAt(mathbase::Vector2f point) const;
    bool isOnHeader(const vellum::Event& event) const;
    void dragBy(float distance);
    void toggleLock();
    void showLanes();

    void drawHeader(const Area& inside);
    void drawHandle(const Area& area, Grip grip);
    void drawName(const Area& area, const Area& clip);
};

} // namespace zavex::cadenza
