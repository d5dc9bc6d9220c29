#include "vellum/user.h"
#include "vellum/vel_context.h"

#include <gtest/gtest.h>

#include <utility>

namespace zavex::vellum::test {

namespace {

/**
 * An owner with the menu "spline" at (50, 20): rows "add", "type" (submenu "square", "smooth") and
 * "remove". Rows are 15 pixels apart; the first spans 25..35 vertically.
 */
struct ContextTest : testing::Test {
    ContextTest()
    {
        menu.setCaption("spline");
        menu.addOption("add", "add");
        Context* type = menu.addOption("type", "");
        type->addOption("square", "");
        type->addOption("smooth", "");
        menu.addOption("remove", "");
        owner.setCallback(&observer);
        reset();
    }

    /** Opens the menu, with nothing chosen. */
    void reset()
    {
        owner.setContext(&menu);
        menu.setPosition(Vector2f(50, 20));
        menu.resize(Vector2f(0, 0));
        owner.seen.clear();
        observer.chosen.clear();
    }

    /** Moves to the point and releases there; the answer to the release. */
    int chooseAt(Vector2f point)
    {
        send(menu, Event::MOUSE_MOVE, point);
        return send(menu, Event::MOUSE_UP, point);
    }

    void drawMenu()
    {
        root.render.clear();
        menu.draw(menu.getArea(), Area(0, 0, 10000, 10000), Area(0, 0, 800, 600));
    }

    Observer observer;
    Root root{Area(0, 0, 800, 600)};
    Probe& owner = addProbe(root, "owner", Area(300, 300, 400, 400));
    Context menu;
};

TEST_F(ContextTest, IsAsLargeAsItsRowsNeed)
{
    EXPECT_EQ(text(menu.getArea()), "50 20 116 70") << "10 + 36 for \"remove\" + 20; 3 * 15 + 5";
    menu.setFixedWidth(120.7f);
    menu.setPosition(Vector2f(50.6f, 20.4f));
    menu.resize(Vector2f(0, 0));
    EXPECT_EQ(text(menu.getArea()), "50 20 171 70") << "whole pixels";
    menu.setFixedWidth(0.0f);
    menu.deleteOptions();
    menu.resize(Vector2f(0, 0));
    EXPECT_EQ(text(menu.getArea()), "50 20 80 25");
}

TEST_F(ContextTest, ARowIsChosenByTheLeftButton)
{
    // Points and the action that a release there delivers, to the owner and to its observers.
    constexpr std::pair<Vector2f, const char*> CASES[] = {
        {{60, 25}, "spline.add"   },
        {{60, 24}, ""             },
        {{60, 34}, "spline.add"   },
        {{60, 35}, ""             },
        {{49, 30}, ""             },
        {{60, 45}, "spline.type"  },
        {{60, 60}, "spline.remove"},
        {{60, 69}, ""             },
    };
    for (const auto& [point, action] : CASES) {
        SCOPED_TRACE(point.y);
        reset();
        EXPECT_EQ(chooseAt(point), *action ? 1 : 0);
        EXPECT_EQ(owner.seen.empty() ? "" : owner.seen.back().action, action);
        EXPECT_EQ(observer.text(), action);
        EXPECT_EQ(root.menu, *action ? nullptr : &menu) << "a choice closes the menu";
    }
}

TEST_F(ContextTest, ASubmenuUnfoldsBesideItsRowAndDeliversTheWholePathOnce)
{
    send(menu, Event::MOUSE_MOVE, Vector2f(60, 45));
    EXPECT_EQ(text(menu.getChild(1)->getArea()), "67 15 133 50");

    const Vector2f square(130, 45); // (13, 10) in the submenu
    send(menu, Event::MOUSE_MOVE, square);
    send(menu, Event::MOUSE_DOWN, square);
    EXPECT_EQ(root.menu, &menu) << "the press is no press outside the rows";
    EXPECT_EQ(chooseAt(square), 1);
    EXPECT_EQ(owner.seen.size(), 1u);
    EXPECT_EQ(observer.text(), "spline.type.square");
    EXPECT_EQ(root.menu, nullptr);
}

TEST_F(ContextTest, RenamesAndHighlightsRows)
{
    menu.setOption("first", -1);
    menu.setOption("last", 2);
    menu.setOption("beyond", 3);
    send(menu, Event::MOUSE_MOVE, Vector2f(60, 45));
    menu.setOption("selected", -1);
    EXPECT_EQ(menu.getChild(0)->getCaption(), "first") << "where nothing was selected";
    EXPECT_EQ(menu.getChild(1)->getCaption(), "selected");
    EXPECT_EQ(menu.setHighlight("last"), 2);
    EXPECT_EQ(menu.setHighlight("Last"), -1);
    drawMenu();
    EXPECT_EQ(root.render.texts.at(3).text, "last");
    EXPECT_EQ(root.render.texts[3].color.x, 0.0f) << "still marked";
    EXPECT_EQ(root.render.texts[0].color.x, 1.0f);
}

TEST_F(ContextTest, DrawsItsRowsWithTheSelectedOneFilledAndCutsWhatDoesNotFit)
{
    send(menu, Event::MOUSE_MOVE, Vector2f(60, 30));
    drawMenu();
    const RecordingRender& render = root.render;
    ASSERT_EQ(render.boxes.size(), 2u);
    EXPECT_EQ(text(render.boxes[0]), "50 20 116 70");
    EXPECT_EQ(text(render.boxes[1]), "55 25 111 35");
    EXPECT_EQ(text(render.borders.at(0)), "50 20 116 70");
    ASSERT_EQ(render.texts.size(), 4u);
    EXPECT_EQ(render.texts[0].text + render.texts[2].text, "add>");
    EXPECT_EQ(render.texts[0].position, Vector2f(55, 30));
    EXPECT_EQ(render.texts[0].align, 0);
    EXPECT_EQ(render.texts[0].color.z, 0.7f) << "the selected row's colour";
    EXPECT_EQ(render.texts[2].position, Vector2f(111, 45));
    EXPECT_EQ(render.texts[2].align, 1) << "it ends at the border";

    menu.setFixedWidth(29.0f); // 19 inside the border: three characters
    menu.resize(Vector2f(0, 0));
    drawMenu();
    EXPECT_EQ(render.texts.at(3).text, "rem");
    menu.setFixedWidth(9.0f); // less than both borders
    menu.resize(Vector2f(0, 0));
    send(menu, Event::MOUSE_MOVE, Vector2f(55, 30));
    drawMenu();
    ASSERT_EQ(render.boxes.size(), 1u) << "no room for a selected row";
    EXPECT_EQ(text(render.boxes[0]), "50 20 59 70");
}

TEST(Workspace, ClosesAMenuAtTheSecondReleaseAfterEachOpening)
{
    Screen screen;
    Probe& owner = addProbe(screen, "owner", Area(0, 0, 30, 48));
    Context menu;
    User user(screen, [&] { return screen.getOpen() ? "open" : ""; });
    owner.setContext(&menu);
    user.does("up 2,2; = open");
    owner.setContext(&menu);
    user.does("up; = open; up; =");
    EXPECT_EQ(owner.count(Event::MOUSE_UP), 1) << "the last: until then the menu alone saw them";
    owner.setContext(&menu);
    user.does("down; =");
    EXPECT_EQ(owner.count(Event::MOUSE_DOWN), 0);
}

} // namespace

} // namespace zavex::vellum::test
