#pragma once

#include "vellum/vel_callback.h"
#include "vellum/vel_context.h"
#include "vellum/vel_control.h"
#include "vellum/vel_render.h"
#include "vellum/vel_workspace.h"

#include "xml/xml_iteratorconst.h"
#include "xml/xml_parser.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zavex::vellum::test {

using Area = Control::Area;
using mathbase::Vector2f;

/** What was drawn, in the order in which it was. */
struct Drawing {
    struct Text {
        std::string text;
        Vector2f position;
        int align = 0;
        mathbase::Vector4f color;
    };
    struct Line {
        Vector2f from;
        Vector2f to;
    };

    std::vector<Area> boxes;
    std::vector<mathbase::Vector4f> boxColors;
    std::vector<mathbase::Vector4f> boxEndColors;
    std::vector<Area> borders;
    std::vector<Line> lines;
    std::vector<Area> circles;
    std::vector<mathbase::Vector4f> circleColors;
    std::vector<Area> clips;
    std::vector<Text> texts;
};

/** Notes what it is told to draw. Every character is 6 pixels wide. */
class RecordingRender final : public Render, public Drawing {
public:
    void setup(display::DisplayGL*, const std::string&) override {}
    void setupDraw(Vector2f, Vector2f, float) override {}
    void setColor(const mathbase::Vector4f& first, const mathbase::Vector4f& second) override
    {
        mFirst = first;
        mSecond = second;
    }
    void setLineWidth(float) override {}
    void setAlign(int align) override { mAlign = align; }
    float getFontHeight() const override { return 10.0f; }
    void drawBox(const Area& box, int) override
    {
        boxes.push_back(box);
        boxColors.push_back(mFirst);
        boxEndColors.push_back(mSecond);
    }
    void drawBorder(const Area& box) override { borders.push_back(box); }
    void drawLine(const Vector2f& from, const Vector2f& to) override
    {
        lines.push_back({from, to});
    }
    void drawCircle(const Area& box, int, float) override
    {
        circles.push_back(box);
        circleColors.push_back(mFirst);
    }
    void drawImage(display::Texture&, const Area&) override {}
    void drawText(const std::string& text, Vector2f position) override
    {
        texts.push_back({text, position, mAlign, mFirst});
    }
    float getTextLength(const std::string& text) const override
    {
        return 6.0f * static_cast<float>(text.size());
    }
    void setClipArea(Area area) override { clips.push_back(area); }
    float getTime() const override { return time; }

    /** Forgets what was drawn. */
    void clear() { static_cast<Drawing&>(*this) = {}; }

    float time = 0.0f; // seconds

private:
    int mAlign = 0;
    mathbase::Vector4f mFirst{0, 0, 0, 0};
    mathbase::Vector4f mSecond{0, 0, 0, 0};
};

/** A control that notes every event and draw call it gets. */
class Probe : public Control {
public:
    struct Seen {
        std::string type;
        Vector2f position; // as it arrived, in the parent's coordinates
        std::string action;
    };
    struct Drawn {
        Area area;
        Area parent;
        Area clip;
    };

    explicit Probe(const std::string& name = "probe", Area area = Area(0, 0, 0, 0));

    Control* clone() override { return new Probe; }
    bool acceptEvents(Event& event) override
    {
        asked = event.mousePos;
        return capturing || Control::acceptEvents(event);
    }
    int handleEvent(Event& event) override;
    void draw(Area area, Area parent, Area clip) override;

    /** How many events of `type` arrived. */
    int count(const std::string& type) const;

    std::vector<Seen> seen;
    std::vector<Drawn> drawn;
    Vector2f asked{0, 0}; // where the event was that it was last asked about
    bool capturing = false;
    int result = 0;                      // returned when the base answers 0
    std::function<void(Event&)> onEvent; // called after the base, may delete this control
};

/** The top of a tree: answers for the render, styles and the pop-up menu, as the workspace does. */
class Root : public Probe {
public:
    explicit Root(Area area = Area(0, 0, 200, 100)) : Probe("root", area) {}

    Render& getRender() override { return render; }
    void setContext(Context* context) override { menu = context; }
    void resetContext() override { menu = nullptr; }
    bool drawsAllChildren() const override { return true; }
    xml::IteratorConst getStyle(const std::string& name) const override
    {
        return std::as_const(styles).createIterator(name);
    }

    RecordingRender render;
    xml::XmlParser styles;
    Context* menu = nullptr;
};

/** A real workspace, drawing into a record, that tells which pop-up menu is open. */
class Screen final : public Workspace {
public:
    Screen() { setArea(Area(0, 0, 400, 300)); }

    Render& getRender() override { return render; }
    void setContext(Context* context) override;
    void resetContext() override;

    /** Draws into an empty record. */
    void redraw()
    {
        render.clear();
        draw();
    }

    /** Null when no menu is open. */
    Context* getOpen() { return mOpen; }

    /** The open menu's caption; empty without one. */
    std::string openMenu() { return mOpen ? mOpen->getCaption() : ""; }

    RecordingRender render;

private:
    Context* mOpen = nullptr;
};

/** Notes the actions it hears of and calls `onAction` for each. */
class Observer final : public Callback {
public:
    void contextAction(Context* context, const std::string& action) override;
    void controlAction(Control* control, Action action) override;

    /** A word for each action heard of, then the menu rows chosen. */
    std::string text() const;

    struct Heard {
        Control* control = nullptr;
        Action action = ACTION_BUTTON_PRESSED;
    };

    std::vector<Heard> heard;
    std::vector<std::string> chosen;
    std::function<void()> onAction;
};

/** Adds a probe, owned by `parent`. */
Probe& addProbe(Control& parent, const std::string& name, Area area);

Event eventAt(const std::string& type, Vector2f position);

/** Sends a fresh event of `type` at `position`, in the coordinates of the control's parent. */
int send(Control& control, const std::string& type, Vector2f position);

/** Sends a fresh press of a key with the modifiers, `display::KeyMod` bits, held. */
int pressKey(Control& control, display::Key key, int modifiers = display::KEYMOD_NONE);

/** Loads `control` from the first element below the document's root. */
void loadFrom(Control& control, const std::string& document);

/** Identifiers of the children, bottom first, and in order of insertion. */
std::string stacking(const Control& parent);
std::string insertion(const Control& parent);

/** "x1 y1 x2 y2" with each number in its shortest form. */
std::string text(const Area& area);

} // namespace zavex::vellum::test
