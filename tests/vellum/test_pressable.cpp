#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_pressable.h"

#include <gtest/gtest.h>

#include <sstream>

namespace zavex::vellum::test {

namespace {

/** Notes what it hears; a press inside it is held. */
class Pad final : public Pressable {
public:
    Control* clone() override { return new Pad; }

    std::ostringstream heard;
    int leaves = 0;
    bool endsOnAny = false;
    std::function<void()> onHeard; // called last, may delete this control

protected:
    void hover(const Event& event) override { note("hover", event); }
    void endHover() override { ++leaves; }
    void press(const Event& event) override
    {
        mHeld = isInside(event);
        note("press", event);
    }
    void pressOther(const Event& event) override { note("other", event); }
    void drag(const Event& event) override { note("drag", event); }
    bool release(const Event& event) override
    {
        drop();
        return note("release", event);
    }
    bool turnWheel(const Event& event) override { return note("wheel", event); }
    bool pressKey(const Event& event) override { return note("key", event); }
    bool typeCharacter(const Event& event) override { return note("type", event); }
    void choose(const std::string& action) override
    {
        Event event;
        note("choose " + action, event);
    }
    bool isHeld() const override { return mHeld; }
    void drop() override
    {
        if (mHeld)
            heard << "drop ";
        mHeld = false;
    }
    bool endsOn(display::MouseButton button) const override
    {
        return endsOnAny ? mHeld : Pressable::endsOn(button);
    }

private:
    bool note(const std::string& what, const Event& event)
    {
        heard << what << ' ' << event.mousePos.x << ',' << event.mousePos.y << ' ';
        if (const std::function<void()> after = onHeard)
            after();
        return true;
    }

    bool mHeld = false;
};

constexpr Vector2f INSIDE(15, 25);   // (5, 5) of the pad
constexpr Vector2f ON_CHILD(35, 45); // (25, 25)
constexpr Vector2f FAR_AWAY(390, 290);

/** A pad at (10, 20) in a box, with a child at (20, 20) of its own. */
struct Stage {
    Stage()
    {
        screen.addControl(box);
        box->setArea(Area(0, 0, 400, 300));
        box->addControl(pad);
        pad->setArea(Area(10, 20, 50, 60));
        pad->setFocus(nullptr);
    }

    int send(const char* kind, Vector2f position = INSIDE)
    {
        Event event = eventAt(kind, position);
        event.action = "menu.row";
        return (kind == std::string(Event::CONTEXT) ? *pad : static_cast<Control&>(screen))
            .handleEvent(event);
    }

    Screen screen;
    Control* box = new Control;
    Pad* pad = new Pad;
    Probe& child = addProbe(*pad, "child", Area(20, 20, 30, 30));
    Mouse mouse{screen};
};

constexpr struct {
    const char* name;
    void (*use)(Stage& stage);
    const char* heard;
} USES[] = {
    {"HeldWhereverThePointerGoes",
     [](Stage& s) {
         s.mouse.drag(INSIDE, FAR_AWAY);
         s.mouse.release();
         s.mouse.moveTo(FAR_AWAY);
     },                                                                       "hover 5,5 press 5,5 drag 380,270 drop release 380,270 "},
    {"OtherButtonDoesNotEnd",
     [](Stage& s) {
         s.mouse.drag(INSIDE, INSIDE);
         s.mouse.press(display::MOUSE_RIGHT);
         s.mouse.release(display::MOUSE_RIGHT);
     },                                                                       "hover 5,5 press 5,5 drag 5,5 other 5,5 "               },
    {"AnyButtonEnds",
     [](Stage& s) {
         s.pad->endsOnAny = true;
         s.mouse.drag(INSIDE, INSIDE);
         s.mouse.release(display::MOUSE_MIDDLE);
     },                                                                       "hover 5,5 press 5,5 drag 5,5 drop release 5,5 "        },
    {"ReleaseOfNothing",           [](Stage& s) { s.send(Event::MOUSE_UP); }, ""                                                      },
    {"InactiveHearsOfMovesAlone",
     [](Stage& s) {
         s.pad->setInactive(true);
         for (const char* kind : {Event::MOUSE_MOVE, Event::MOUSE_DOWN, Event::MOUSE_UP,
                                  Event::MOUSE_WHEEL, Event::KEY_DOWN, Event::CHAR_DOWN})
             EXPECT_EQ(s.send(kind), 0);
     },                                                                       "hover 5,5 "                                            },
    {"DroppedOnBecomingInactive",
     [](Stage& s) {
         s.mouse.drag(INSIDE, INSIDE);
         s.pad->setInactive(true);
     },                                                                       "hover 5,5 press 5,5 drag 5,5 drop "                    },
    {"BelowAHiddenOne",
     [](Stage& s) {
         s.box->setVisible(false);
         s.mouse.drag(INSIDE, INSIDE);
         s.send(Event::CONTEXT);
         EXPECT_GT(s.pad->leaves, 0);
     },                                                                       ""                                                      },
    {"DroppedWhenHidden",
     [](Stage& s) {
         s.mouse.drag(INSIDE, INSIDE);
         s.box->setVisible(false);
         s.box->setVisible(true);
         s.mouse.release();
     },                                                                       "hover 5,5 press 5,5 drag 5,5 drop "                    },
    {"UsedByAChild",
     [](Stage& s) {
         s.child.result = 1;
         s.mouse.moveTo(ON_CHILD);
         s.mouse.press();
         EXPECT_EQ(s.mouse.turnWheel(1), 1);
     },                                                                       "hover 25,25 "                                          },
    {"ReleasedOverAChild",
     [](Stage& s) {
         s.child.result = 1;
         s.mouse.drag(INSIDE, ON_CHILD);
         s.mouse.release();
     },                                                                       "hover 5,5 press 5,5 drag 25,25 drop release 25,25 "    },
    {"KeysWithoutTheFocus",
     [](Stage& s) {
         s.box->setFocus(nullptr);
         s.send(Event::KEY_DOWN);
         s.send(Event::CHAR_DOWN);
     },                                                                       ""                                                      },
    {"ChoiceIsTheControlsAlone",
     [](Stage& s) {
         EXPECT_EQ(s.send(Event::CONTEXT), 0);
         EXPECT_EQ(s.child.count(Event::CONTEXT), 0);
     },                                                                       "choose menu.row 0,0 "                                  },
};

TEST(Pressable, TellsApartWhatHappens)
{
    for (const auto& row : USES) {
        SCOPED_TRACE(row.name);
        Stage stage;
        row.use(stage);
        EXPECT_EQ(stage.pad->heard.str(), row.heard);
    }
}

TEST(Pressable, BearsToBeDeletedAndTellsWhatItUsed)
{
    constexpr struct {
        const char* kind;
        int used;
    } KINDS[] = {
        {Event::MOUSE_MOVE,  0},
        {Event::MOUSE_DOWN,  0},
        {Event::MOUSE_UP,    1},
        {Event::MOUSE_WHEEL, 1},
        {Event::KEY_DOWN,    1},
        {Event::CHAR_DOWN,   1},
        {Event::CONTEXT,     0},
    };
    for (const auto& [kind, used] : KINDS) {
        SCOPED_TRACE(kind);
        Stage stage;
        stage.mouse.drag(INSIDE, INSIDE);
        stage.pad->onHeard = [&] { stage.box->deleteControls(); };
        EXPECT_EQ(stage.send(kind), used);
        EXPECT_EQ(stage.box->getChildCount(), 0);
    }
    Stage stage;
    stage.child.onEvent = [&](Event&) { stage.box->deleteControls(); };
    EXPECT_EQ(stage.send(Event::MOUSE_WHEEL, ON_CHILD), 0) << "gone with the child that had it";
}

} // namespace

} // namespace zavex::vellum::test
