#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/styled_root.h"
#include "vellum/vel_box.h"
#include "vellum/vel_box_view.h"
#include "vellum/vel_control_factory.h"
#include "vellum/vel_layout_stack.h"
#include "vellum/vel_panel.h"
#include "vellum/vel_scrollbars.h"
#include "vellum/vel_window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace zavex::vellum::test {

namespace {

/** A control that keeps what is added to it in a frame of its own. */
struct HolderCase {
    const char* name;
    std::unique_ptr<Control> (*make)();
    const char* frame;   // type of the frame, which is also its style
    const char* content; // rectangle of content at (0, 0, 10, 10), the holder being at (30, 40)
};

template <typename Holder>
std::unique_ptr<Control> make()
{
    return std::make_unique<Holder>();
}

constexpr HolderCase HOLDER_CASES[] = {
    {"AWindow",     make<Window>,     "windowframe",     "30 66 40 76"},
    {"AScrollArea", make<Scrollbars>, "scrollbarsframe", "30 40 40 50"},
    {"ABox",        make<Box>,        "boxframe",        "30 60 40 70"},
    {"APanel",      make<Panel>,      "panelframe",      "30 60 40 70"},
};

TEST(ContentFrame, HoldsWhatALayoutPutsInsideAndHasAStyle)
{
    controlFactory.addControlType(new Probe);
    for (const auto& [name, makeHolder, type, content] : HOLDER_CASES) {
        SCOPED_TRACE(name);
        StyledRoot root(Area(0, 0, 200, 200));
        root.styles.parse(std::string("<vellum><") + type +
                          "><color name='back.color' first='00ff00ff' second='00ff00ff'/></" +
                          type + "></vellum>");
        Control* holder = makeHolder().release();
        root.addControl(holder);
        const int own = holder->getChildCount();
        loadFrom(*holder, R"(<vellum><holder id="holder" caption="title">
            <area x="30" y="40" w="100" h="80"/>
            <child><probe id="first"><area w="10" h="10"/></probe>
            <probe id="second"><area x="20" w="10" h="10"/></probe></child></holder></vellum>)");
        Control* first = holder->findControl("first");
        ASSERT_NE(first, nullptr);
        Control& frame = *first->getParent();
        EXPECT_EQ(frame.getType(), type);
        EXPECT_EQ(frame.getParent(), holder);
        EXPECT_EQ(insertion(frame), "first second");
        EXPECT_EQ(text(first->getAreaWorld()), content);
        root.draw(root.getArea(), root.getArea(), root.getArea());
        const mathbase::Vector4f green(0.0f, 1.0f, 0.0f, 1.0f);
        EXPECT_EQ(std::ranges::count(root.render.boxColors, green), 1);

        holder->deleteControl(0);
        EXPECT_EQ(insertion(frame), "second");
        holder->addControl(new Probe("third"), 0);
        EXPECT_EQ(insertion(frame), "third second");
        holder->deleteControls();
        EXPECT_EQ(insertion(frame), "");
        EXPECT_EQ(holder->getChildCount(), own);
    }
}

TEST(WindowStyle, ItsClassNamesTheStyleOfTheFrame)
{
    StyledRoot root;
    root.styles.parse("<vellum><windowframe><color name='back.color' first='ff0000'/></windowframe>"
                      "<glass><color name='back.color' first='0000ff'/></glass>"
                      "<caption><color name='back.color' first='ffff00'/></caption></vellum>");
    auto* window = new Window;
    root.addControl(window);
    loadFrom(*window, "<vellum><window class='glass' caption='view'>"
                      "<area w='50' h='50'/></window></vellum>");
    EXPECT_EQ(window->getCaption(), "view");
    root.draw(root.getArea(), root.getArea(), root.getArea());
    const auto shows = [&](float red, float green, float blue) {
        return std::ranges::count(root.render.boxColors, mathbase::Vector4f(red, green, blue, 1));
    };
    EXPECT_EQ(shows(0, 0, 1), 1);
    EXPECT_EQ(shows(1, 0, 0), 0);
    EXPECT_EQ(shows(1, 1, 0), 1);
}

/** Two panels of 100 x 60 in a column; the first added is the lower one. */
struct PanelTest : testing::Test {
    PanelTest()
    {
        root.addControl(stack);
        stack->setArea(Area(10, 10, 110, 190));
        for (Panel* panel : {lower, upper}) {
            panel->setArea(Area(0, 0, 100, 60));
            stack->addControl(panel);
        }
        content = &addProbe(*upper, "content", Area(0, 0, 100, 100));
        stack->setCallback(&observer);
    }

    Observer observer;
    Root root{Area(0, 0, 200, 200)};
    LayoutStack* stack = new LayoutStack;
    Panel* lower = new Panel;
    Panel* upper = new Panel;
    Probe* content = nullptr;
    Mouse mouse{root};
};

TEST_F(PanelTest, FoldsAndTheColumnClosesUp)
{
    mouse.click(Vector2f(50, 15));
    EXPECT_TRUE(upper->getFolded());
    EXPECT_EQ(text(upper->getArea()), "0 0 100 20");
    EXPECT_EQ(text(lower->getArea()), "0 20 100 80");
    mouse.moveTo(Vector2f(50, 25));
    mouse.press();
    EXPECT_EQ(content->count("mousedown"), 0);
    EXPECT_EQ(content->drawn.size(), 0u);
    EXPECT_FALSE(lower->getFolded() && upper->getFolded()) << "one caption, one panel";

    upper->setFolded(false);
    EXPECT_EQ(text(upper->getArea()), "0 0 100 60");
    ASSERT_FALSE(observer.heard.empty());
    EXPECT_EQ(observer.heard[0].control, upper);
    EXPECT_EQ(observer.heard[0].action, ACTION_WINDOW_RESIZE);
}

constexpr struct SheetCase {
    const char* name;
    Vector2f press;
    const char* box;    // on the sheet, after a drag by (30, 15)
    const char* offset; // of the sheet
} SHEET_CASES[] = {
    {"ByTheCaption",      {25.0f, 25.0f},   "50 35 100 75", "0 0"    },
    {"CaptionsLastPixel", {69.0f, 39.0f},   "50 35 100 75", "0 0"    },
    {"ByTheContent",      {25.0f, 40.0f},   "20 20 70 60",  "0 0"    },
    {"ByTheSheet",        {70.0f, 25.0f},   "50 35 100 75", "-30 -15"},
    {"FromOutside",       {150.0f, 150.0f}, "20 20 70 60",  "0 0"    },
};

TEST(BoxViewDrag, MovesABoxOrTheWholeSheet)
{
    for (const SheetCase& row : SHEET_CASES) {
        SCOPED_TRACE(row.name);
        Root root(Area(0, 0, 200, 200));
        auto* view = new BoxView;
        auto* box = new Box;
        root.addControl(view);
        view->setArea(Area(0, 0, 100, 100));
        view->addControl(box);
        box->setArea(Area(20, 20, 70, 60));

        Mouse mouse(root);
        mouse.drag(row.press, row.press + Vector2f(300, 300));
        mouse.moveTo(row.press + Vector2f(30, 15));
        mouse.release();
        mouse.moveTo(Vector2f(90, 90));
        EXPECT_EQ(text(box->getArea()), row.box);
        const Vector2f offset = view->getOffset();
        EXPECT_EQ(text(Area(offset, offset)), row.offset + std::string(" ") + row.offset);
    }
}

} // namespace

} // namespace zavex::vellum::test
