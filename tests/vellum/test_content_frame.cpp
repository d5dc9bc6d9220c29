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
    Control* (*make)();
    const char* frame;   // type of the frame, which is also its style
    const char* content; // rectangle of content at (0, 0, 10, 10), the holder being at (30, 40)

    friend void PrintTo(const HolderCase& holder, std::ostream* out) { *out << holder.name; }
};

template <typename Holder>
Control* make()
{
    return new Holder;
}

constexpr HolderCase HOLDER_CASES[] = {
    {"AWindow",     make<Window>,     "windowframe",     "30 66 40 76"},
    {"AScrollArea", make<Scrollbars>, "scrollbarsframe", "30 40 40 50"},
    {"ABox",        make<Box>,        "boxframe",        "30 60 40 70"},
    {"APanel",      make<Panel>,      "panelframe",      "30 60 40 70"},
};

struct ContentFrame : testing::TestWithParam<HolderCase> {
    static void SetUpTestSuite() { controlFactory.addControlType(new Probe); }

    void load()
    {
        loadFrom(*holder, R"(<vellum><holder id="holder" caption="title">
            <area x="30" y="40" w="100" h="80"/>
            <child><probe id="first"><area w="10" h="10"/></probe>
            <probe id="second"><area x="20" w="10" h="10"/></probe></child></holder></vellum>)");
    }

    StyledRoot root{Area(0, 0, 200, 200)};
    Control* holder = GetParam().make();
};

TEST_P(ContentFrame, HoldsWhatALayoutPutsInside)
{
    root.addControl(holder);
    const int own = holder->getChildCount();
    load();
    Control* first = holder->findControl("first");
    ASSERT_NE(first, nullptr);
    Control& frame = *first->getParent();
    EXPECT_EQ(frame.getType(), GetParam().frame);
    EXPECT_EQ(frame.getParent(), holder);
    EXPECT_EQ(holder->getChildCount(), own);
    EXPECT_EQ(insertion(frame), "first second");
    EXPECT_EQ(text(first->getAreaWorld()), GetParam().content);

    holder->deleteControl(0);
    EXPECT_EQ(insertion(frame), "second");
    holder->addControl(new Probe("third"), 0);
    EXPECT_EQ(insertion(frame), "third second");
    holder->deleteControls();
    EXPECT_EQ(insertion(frame), "");
    EXPECT_EQ(holder->getChildCount(), own);
}

TEST_P(ContentFrame, TakesItsColorsFromItsStyle)
{
    root.styles.parse(std::string("<vellum><") + GetParam().frame +
                      "><color name='back.color' first='00ff00ff' second='00ff00ff'/></" +
                      GetParam().frame + "></vellum>");
    root.addControl(holder);
    load();
    root.draw(root.getArea(), root.getArea(), root.getArea());
    const mathbase::Vector4f green(0.0f, 1.0f, 0.0f, 1.0f);
    EXPECT_EQ(std::ranges::count(root.render.boxColors, green), 1);
}

TEST_P(ContentFrame, ComesWithEveryClone)
{
    const std::unique_ptr<Control> original(holder);
    const std::unique_ptr<Control> copy(holder->clone());
    EXPECT_EQ(copy->getType(), holder->getType());
    copy->addControl(new Probe("content"));
    EXPECT_EQ(copy->findControl("content")->getParent()->getType(), GetParam().frame);
    EXPECT_EQ(holder->findControl("content"), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Cases, ContentFrame, testing::ValuesIn(HOLDER_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

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

TEST_F(PanelTest, HidesItsContentAlsoWhereItCannotShrink)
{
    upper->setMaximized(true);
    upper->setFolded(true);
    mouse.click(Vector2f(50, 100));
    EXPECT_EQ(content->count("mousedown"), 0);
}

struct FoldCase {
    const char* name;
    Vector2f press;
    bool folds;

    friend void PrintTo(const FoldCase& fold, std::ostream* out) { *out << fold.name; }
};

constexpr FoldCase FOLD_CASES[] = {
    {"TopLeft",    {10.0f, 10.0f},  true },
    {"LastPixel",  {109.0f, 29.0f}, true },
    {"RightEdge",  {110.0f, 15.0f}, false},
    {"Above",      {50.0f, 9.0f},   false},
    {"TheContent", {50.0f, 30.0f},  false},
};

class PanelFold : public PanelTest, public testing::WithParamInterface<FoldCase> {};

TEST_P(PanelFold, IsOnTheCaption)
{
    upper->setInactive(true);
    mouse.click(GetParam().press);
    EXPECT_FALSE(upper->getFolded());
    upper->setInactive(false);
    mouse.click(GetParam().press);
    EXPECT_EQ(upper->getFolded(), GetParam().folds);
}

INSTANTIATE_TEST_SUITE_P(Cases, PanelFold, testing::ValuesIn(FOLD_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

struct SheetCase {
    const char* name;
    Vector2f press;
    const char* box;    // on the sheet, after a drag by (30, 15)
    const char* offset; // of the sheet

    friend void PrintTo(const SheetCase& sheet, std::ostream* out) { *out << sheet.name; }
};

constexpr SheetCase SHEET_CASES[] = {
    {"ByTheCaption",      {25.0f, 25.0f},   "50 35 100 75", "0 0"    },
    {"CaptionsLastPixel", {69.0f, 39.0f},   "50 35 100 75", "0 0"    },
    {"ByTheContent",      {25.0f, 40.0f},   "20 20 70 60",  "0 0"    },
    {"ByTheSheet",        {70.0f, 25.0f},   "50 35 100 75", "-30 -15"},
    {"FromOutside",       {150.0f, 150.0f}, "20 20 70 60",  "0 0"    },
};

class BoxViewDrag : public testing::TestWithParam<SheetCase> {};

TEST_P(BoxViewDrag, MovesABoxOrTheWholeSheet)
{
    Root root(Area(0, 0, 200, 200));
    auto* view = new BoxView;
    auto* box = new Box;
    root.addControl(view);
    view->setArea(Area(0, 0, 100, 100));
    view->addControl(box);
    box->setArea(Area(20, 20, 70, 60));

    Mouse mouse(root);
    mouse.drag(GetParam().press, GetParam().press + Vector2f(300, 300));
    mouse.moveTo(GetParam().press + Vector2f(30, 15));
    mouse.release();
    mouse.moveTo(Vector2f(90, 90));
    EXPECT_EQ(text(box->getArea()), GetParam().box);
    const Vector2f offset = view->getOffset();
    EXPECT_EQ(text(Area(offset, offset)), GetParam().offset + std::string(" ") + GetParam().offset);
}

INSTANTIATE_TEST_SUITE_P(Cases, BoxViewDrag, testing::ValuesIn(SHEET_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

} // namespace

} // namespace zavex::vellum::test
