#include "vellum/user.h"
#include "vellum/vel_context.h"

#include <gtest/gtest.h>

#include <string>

namespace zavex::vellum::test {

namespace {

/** The titles are "file" at x 5..29, "edit" at 44..68; the menu of "file" is at (5, 20). */
std::string bar(const std::string& colors)
{
    return "<menubar>" + colors + R"(<area width="400" height="20"/>
        <item caption="file"><item caption="quit"/><item caption="recent"><item caption="a.xml"/>
        </item></item><item caption="edit"><color name="text.color" first="0000ff"/>
        <item caption="undo"/></item></menubar>)";
}

TEST(MenuBar, SharesNoEventWithOthersUntilAnyButtonClosedItsMenu)
{
    Bench bench(bar(""));
    Probe& below = addProbe(bench.screen, "below", Area(0, 20, 400, 300));
    bench.user.does("click 10,10; down 10,30; up");
    EXPECT_EQ(below.count(Event::MOUSE_UP), 0) << "seen by the bar and its menu alone";
    bench.user.does("click 10,10; right 300,200; move 301,200; down");
    EXPECT_EQ(below.count(Event::MOUSE_DOWN), 1) << "the next press alone";
}

/** The colour that the first text `caption` was drawn in. */
mathbase::Vector4f colorOf(const RecordingRender& render, const std::string& caption)
{
    for (const RecordingRender::Text& text : render.texts)
        if (text.text == caption)
            return text.color;
    ADD_FAILURE() << caption << " was not drawn";
    return {};
}

TEST(MenuBar, GivesItsColoursToMenusThatHaveNoneOfTheirOwn)
{
    Bench bench(bar("<color name='text.color' first='ff0000'/>"
                    "<color name='back.color' first='00ff00'/>"));
    const auto colorIn = [&](const char* steps, const std::string& caption) {
        bench.user.does(steps);
        Context& menu = *bench.screen.getOpen();
        bench.screen.render.clear();
        menu.draw(menu.getArea(), bench.screen.getArea(), bench.screen.getArea());
        return colorOf(bench.screen.render, caption);
    };
    EXPECT_EQ(colorIn("down 10,10", "quit"), mathbase::Vector4f(1, 0, 0, 1));
    EXPECT_EQ(colorIn("move 10,45", "recent"), mathbase::Vector4f(0, 1, 0, 1)) << "selected";
    EXPECT_EQ(colorIn("", "a.xml"), mathbase::Vector4f(1, 0, 0, 1)) << "submenu";
    EXPECT_EQ(colorIn("move 50,10", "undo"), mathbase::Vector4f(0, 0, 1, 1));
}

TEST(MenuBar, WritesTheMarkedTitleAsAMarkedRow)
{
    Bench bench(bar("<color name='text.color' first='ff0000'/>"
                    "<color name='text.highlight' first='ffffff' second='0000ff'/>"));
    bench.user.does("move 10,10");
    bench.screen.redraw();
    EXPECT_EQ(colorOf(bench.screen.render, "file"), mathbase::Vector4f(0, 0, 1, 1));
    EXPECT_EQ(colorOf(bench.screen.render, "edit"), mathbase::Vector4f(1, 0, 0, 1));
}

} // namespace

} // namespace zavex::vellum::test
