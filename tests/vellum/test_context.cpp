#include "vellum/probe.h"
#include "vellum/vel_context.h"

#include <gtest/gtest.h>

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

    int sendToMenu(const std::string& type, Vector2f position)
    {
        return send(menu, type, position);
    }

    /** The actions of the "context" events that the owner received. */
    std::vector<std::string> choicesSeen() const
    {
        std::vector<std::string> actions;
        for (const Probe::Seen& each : owner.seen)
            if (each.type == "context")
                actions.push_back(each.action);
        return actions;
    }

    void drawMenu() { menu.draw(menu.getArea(), Area(0, 0, 10000, 10000), Area(0, 0, 800, 600)); }

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

constexpr struct RowCase {
    const char* name;
    float x;
    float y;
    const char* expected; // action delivered by a left release after moving there; empty for none
} ROW_CASES[] = {
    {"FirstRowsTop",       60.0f, 25.0f, "spline.add"   },
    {"AboveTheFirstRow",   60.0f, 24.0f, ""             },
    {"FirstRowsLastPixel", 60.0f, 34.0f, "spline.add"   },
    {"BetweenRows",        60.0f, 35.0f, ""             },
    {"LeftOfTheMenu",      49.0f, 30.0f, ""             },
    {"ARowWithASubmenu",   60.0f, 45.0f, "spline.type"  },
    {"LastRow",            60.0f, 60.0f, "spline.remove"},
    {"Below",              60.0f, 69.0f, ""             },
};

TEST_F(ContextTest, RowIsChosenByTheLeftButton)
{
    for (const RowCase& row : ROW_CASES) {
        SCOPED_TRACE(row.name);
        reset();
        const Vector2f point(row.x, row.y);
        std::vector<std::string> expected;
        if (*row.expected)
            expected.emplace_back(row.expected);
        sendToMenu("mousemove", point);

        EXPECT_EQ(sendToMenu("mouseup", point), expected.empty() ? 0 : 1);
        EXPECT_EQ(choicesSeen(), expected);
        EXPECT_EQ(observer.chosen, expected);
        EXPECT_EQ(root.menu, expected.empty() ? &menu : nullptr) << "a choice closes the menu";
    }
}

TEST_F(ContextTest, ASubmenuUnfoldsBesideItsRowAndDeliversTheWholePathOnce)
{
    sendToMenu("mousemove", Vector2f(60, 45));
    EXPECT_EQ(text(menu.getChild(1)->getArea()), "67 15 133 50");

    const Vector2f square(130, 45); // (13, 10) in the submenu
    sendToMenu("mousemove", square);
    sendToMenu("mousedown", square);
    EXPECT_EQ(root.menu, &menu) << "the press is no press outside the rows";
    EXPECT_EQ(sendToMenu("mouseup", square), 1);
    ASSERT_EQ(owner.seen.size(), 1u);
    EXPECT_EQ(owner.seen[0].action, "spline.type.square");
    EXPECT_EQ(observer.chosen, std::vector<std::string>{"spline.type.square"});
    EXPECT_EQ(root.menu, nullptr);
}

TEST_F(ContextTest, APressOutsideTheRowsClosesWithoutAChoice)
{
    sendToMenu("mousemove", Vector2f(60, 30));
    EXPECT_EQ(sendToMenu("mousedown", Vector2f(60, 30)), 0);
    EXPECT_EQ(root.menu, &menu);

    sendToMenu("mousemove", Vector2f(500, 500));
    EXPECT_EQ(sendToMenu("mousedown", Vector2f(500, 500)), 0);
    EXPECT_EQ(root.menu, nullptr);
    EXPECT_TRUE(observer.chosen.empty());
}

TEST_F(ContextTest, RenamesAndHighlightsRows)
{
    menu.setOption("first", -1);
    EXPECT_EQ(menu.getChild(0)->getCaption(), "first") << "nothing is selected";
    menu.setOption("last", 2);
    menu.setOption("beyond", 3);
    sendToMenu("mousemove", Vector2f(60, 45));
    menu.setOption("selected", -1);
    EXPECT_EQ(menu.getChild(0)->getCaption(), "first");
    EXPECT_EQ(menu.getChild(1)->getCaption(), "selected");
    EXPECT_EQ(menu.setHighlight("last"), 2);
    EXPECT_EQ(menu.setHighlight("Last"), -1);
    drawMenu();
    ASSERT_GE(root.render.texts.size(), 4u);
    EXPECT_EQ(root.render.texts[3].text, "last");
    EXPECT_EQ(root.render.texts[3].color.x, 0.0f) << "still marked";
    EXPECT_EQ(root.render.texts[0].color.x, 1.0f);
}

TEST_F(ContextTest, DrawsItsRowsWithTheSelectedOneFilled)
{
    sendToMenu("mousemove", Vector2f(60, 30));
    drawMenu();
    const RecordingRender& render = root.render;
    ASSERT_EQ(render.boxes.size(), 2u);
    EXPECT_EQ(text(render.boxes[0]), "50 20 116 70");
    EXPECT_EQ(text(render.boxes[1]), "55 25 111 35");
    EXPECT_EQ(text(render.borders.at(0)), "50 20 116 70");
    ASSERT_EQ(render.texts.size(), 4u);
    EXPECT_EQ(render.texts[0].text, "add");
    EXPECT_EQ(text(Area(render.texts[0].position, Vector2f(0, 0))), "55 30 0 0");
    EXPECT_EQ(render.texts[0].align, 0);
    EXPECT_EQ(render.texts[0].color.z, 0.7f) << "the selected row's colour";
    EXPECT_EQ(render.texts[2].text, ">");
    EXPECT_EQ(text(Area(render.texts[2].position, Vector2f(0, 0))), "111 45 0 0");
    EXPECT_EQ(render.texts[2].align, 1) << "it ends at the border";
}

TEST_F(ContextTest, CutsCaptionsThatDoNotFit)
{
    menu.setFixedWidth(29.0f); // 19 inside the border: three characters
    menu.resize(Vector2f(0, 0));
    drawMenu();
    EXPECT_EQ(root.render.texts.at(3).text, "rem");

    menu.setFixedWidth(9.0f); // less than both borders
    menu.resize(Vector2f(0, 0));
    sendToMenu("mousemove", Vector2f(55, 30));
    root.render.boxes.clear();
    drawMenu();
    ASSERT_EQ(root.render.boxes.size(), 1u) << "no room for a selected row";
    EXPECT_EQ(text(root.render.boxes[0]), "50 20 59 70");
}

} // namespace

} // namespace zavex::vellum::test
