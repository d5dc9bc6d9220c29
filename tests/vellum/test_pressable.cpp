#include "vellum/user.h"
#include "vellum/vel_pressable.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <utility>

namespace zavex::vellum::test {

namespace {

/** Notes what it hears; a press inside it is held. */
class Pad final : public Pressable {
public:
    Pad() { mId = "pad"; }
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
    void choose(const std::string& action) override { note("choose " + action, {}); }
    bool isHeld() const override { return mHeld; }
    void drop() override { heard << (std::exchange(mHeld, false) ? "drop " : ""); }
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

/** A pad at (10, 20) in a box, with a child at (20, 20) of its own that uses everything. */
struct PadBench {
    PadBench()
    {
        screen.addControl(&box);
        box.addControl(pad);
        pad->setArea(Area(10, 20, 50, 60));
        child.result = 1;
        pad->setFocus(nullptr);
    }

    Screen screen;
    Probe box{"box", Area(0, 0, 400, 300)};
    Pad* pad = new Pad; // owned by the box
    Probe& child = addProbe(*pad, "child", Area(20, 20, 30, 30));
    User user{screen};
};

// clang-format off
constexpr struct {
    const char* name;
    const char* steps;
    const char* heard;
    bool endsOnAny = false;
} USES[] = {
    {"HeldWhereverThePointerGoes", "down 15,25; move 390,290; up; used; move 390,290",       "hover 5,5 press 5,5 drag 380,270 drop release 380,270 "},
    {"OtherButtonDoesNotEnd",      "down 15,25; right; rightup; unused",                     "hover 5,5 press 5,5 other 5,5 "},
    {"AnyButtonEnds",              "down 15,25; rightup; used",                              "hover 5,5 press 5,5 drop release 5,5 ", true},
    {"ReleaseOfNothing",           "up 15,25; unused",                                       "hover 5,5 "},
    {"InactiveHearsOfMovesAlone",  "disable pad; move 15,25; unused; down; unused; up; unused; wheel 1; unused; key UP; unused; type a; unused", "hover 5,5 "},
    {"DroppedOnBecomingInactive",  "down 15,25; disable pad; up",                            "hover 5,5 press 5,5 drop "},
    {"BelowAHiddenOne",            "hide box; down 15,25",                                   ""},
    {"DroppedWhenHidden",          "down 15,25; hide box; show box; up",                     "hover 5,5 press 5,5 drop "},
    {"UsedByAChild",               "move 35,45; down; wheel 1; used",                        "hover 25,25 "},
    {"ReleasedOverAChild",         "down 15,25; move 35,45; up",                             "hover 5,5 press 5,5 drag 25,25 drop release 25,25 "},
    {"KeysAndCharacters",          "key UP; used; type a; used; move 15,25; wheel 1; used",  "key -10,-20 type -10,-20 hover 5,5 wheel 5,5 "},
    {"KeysWithoutTheFocus",        "focus box; key UP; type a",                              ""},
};
// clang-format on

TEST(Pressable, TellsApartWhatHappens)
{
    for (const auto& row : USES) {
        SCOPED_TRACE(row.name);
        PadBench bench;
        bench.pad->endsOnAny = row.endsOnAny;
        bench.user.does(row.steps);
        EXPECT_EQ(bench.pad->heard.str(), row.heard);
        EXPECT_GT(bench.pad->leaves + (row.steps[0] == 'f'), 0);
    }
}

TEST(Pressable, BearsToBeDeletedAndTellsWhatItUsed)
{
    for (const auto& [kind, used] : {
             std::pair(Event::MOUSE_MOVE, 0),
             {Event::MOUSE_DOWN,  0},
             {Event::MOUSE_UP,    1},
             {Event::MOUSE_WHEEL, 1},
             {Event::KEY_DOWN,    1},
             {Event::CHAR_DOWN,   1}
    }) {
        SCOPED_TRACE(kind);
        PadBench bench;
        bench.user.does("down 15,25");
        bench.pad->onHeard = [&] { bench.box.deleteControls(); };
        EXPECT_EQ(send(bench.screen, kind, Vector2f(15, 25)), used);
        EXPECT_EQ(bench.box.getChildCount(), 0);
    }
}

TEST(Pressable, AChoiceIsTheControlsAlone)
{
    PadBench bench;
    bench.pad->onHeard = [&] { bench.pad->onHeard = {}; };
    Event event = eventAt(Event::CONTEXT, Vector2f(15, 25));
    event.action = "menu.row";
    EXPECT_EQ(bench.pad->handleEvent(event), 0);
    EXPECT_EQ(bench.pad->heard.str(), "choose menu.row 0,0 ");
    EXPECT_EQ(bench.child.count(Event::CONTEXT), 0);
}

} // namespace

} // namespace zavex::vellum::test
