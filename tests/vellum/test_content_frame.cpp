#include "vellum/user.h"
#include "vellum/vel_panel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace zavex::vellum::test {

namespace {

/** Controls that keep what is added to them in a frame of their own. */
constexpr struct HolderCase {
    const char* type;
    const char* frame;   // its type, which is also its style
    const char* content; // rectangle of content at (0, 0, 10, 10), the holder being at (30, 40)
} HOLDER_CASES[] = {
    {"window",     "windowframe",     "30 66 40 76"},
    {"scrollbars", "scrollbarsframe", "30 40 40 50"},
    {"box",        "boxframe",        "30 60 40 70"},
    {"panel",      "panelframe",      "30 60 40 70"},
};

/** How many boxes a colour fills. */
long count(Root& root, float red, float green, float blue)
{
    root.render.clear();
    root.draw(root.getArea(), root.getArea(), root.getArea());
    return std::ranges::count(root.render.boxColors, mathbase::Vector4f(red, green, blue, 1));
}

TEST(ContentFrame, HoldsWhatALayoutPutsInsideAndHasAStyle)
{
    for (const auto& [type, frameType, content] : HOLDER_CASES) {
        SCOPED_TRACE(type);
        const auto element = [](const std::string& name, const std::string& inside) {
            return "<" + name + ">" + inside + "</" + name + ">";
        };
        Root root(Area(0, 0, 200, 200));
        root.styles.parse(
            element("vellum", element(frameType, "<color name='back.color' "
                                                 "first='00ff00' second='00ff00'/>")));
        Control& holder = addLoaded(root, element(type, R"(<area x="30" y="40" w="100" h="80"/>
            <child><container id="first"><area w="10" h="10"/></container>
            <container id="second"><area x="20" w="10" h="10"/></container></child>)"));
        Control* const first = holder.findControl("first");
        ASSERT_NE(first, nullptr);
        Control& frame = *first->getParent();
        EXPECT_EQ(frame.getType(), frameType);
        EXPECT_EQ(frame.getParent(), &holder);
        EXPECT_EQ(insertion(frame), "first second");
        EXPECT_EQ(text(first->getAreaWorld()), content);
        EXPECT_EQ(count(root, 0, 1, 0), 1);

        const int own = holder.getChildCount();
        holder.deleteControl(0);
        holder.addControl(new Probe("third"), 0);
        EXPECT_EQ(insertion(frame), "third second");
        holder.deleteControls();
        EXPECT_EQ(insertion(frame), "");
        EXPECT_EQ(holder.getChildCount(), own);
    }
}

TEST(WindowStyle, ItsClassNamesTheStyleOfTheFrame)
{
    Root root;
    root.styles.parse("<vellum><windowframe><color name='back.color' first='ff0000'/></windowframe>"
                      "<glass><color name='back.color' first='0000ff'/></glass>"
                      "<caption><color name='back.color' first='ffff00'/></caption></vellum>");
    Control& window =
        addLoaded(root, "<window class='glass' caption='view'><area w='50' h='50'/></window>");
    EXPECT_EQ(window.getCaption(), "view");
    EXPECT_EQ(count(root, 0, 0, 1), 1);
    EXPECT_EQ(count(root, 1, 0, 0), 0);
    EXPECT_EQ(count(root, 1, 1, 0), 1);
}

TEST(Panel, FoldsAndTheColumnClosesUp)
{
    Bench bench("<layoutstack><area x='10' y='10' w='100' h='180'/><child>" // bottom first
                "<panel id='lower'><area w='100' h='60'/></panel>"
                "<panel id='upper'><area w='100' h='60'/></panel></child></layoutstack>");
    auto& upper = dynamic_cast<Panel&>(*bench.screen.findControl("upper"));
    auto& lower = dynamic_cast<Panel&>(*bench.screen.findControl("lower"));
    const Probe& content = addProbe(upper, "content", Area(0, 0, 100, 100));
    bench.user.does("click 50,15");
    EXPECT_TRUE(upper.getFolded());
    EXPECT_EQ(text(upper.getArea()), "0 0 100 20");
    EXPECT_EQ(text(lower.getArea()), "0 20 100 80");
    EXPECT_FALSE(lower.getFolded());
    bench.screen.redraw();
    EXPECT_EQ(content.drawn.size(), 0u);
    bench.user.does("click 50,45"); // where the content was
    EXPECT_TRUE(lower.getFolded());
    EXPECT_EQ(content.count(Event::MOUSE_DOWN), 0);

    upper.setFolded(false);
    EXPECT_EQ(text(upper.getArea()), "0 0 100 60");
    EXPECT_EQ(bench.observer.heard.at(0).control, &upper);
    EXPECT_EQ(bench.observer.heard[0].action, ACTION_WINDOW_RESIZE);
}

} // namespace

} // namespace zavex::vellum::test
