#include "vellum/user.h"
#include "vellum/vel_window.h"

#include <gtest/gtest.h>

#include <string>

namespace zavex::vellum::test {

namespace {

const std::string WINDOW = "<window><area x='50' y='40' w='200' h='150'/></window>";

TEST(Window, FollowsThePointerOnAScrolledParent)
{
    Bench bench(WINDOW);
    bench.screen.setOffset(Vector2f(10, 5));
    bench.user.does("down 100,50; move 20,70");
    EXPECT_EQ(text(bench.control.getArea() + bench.screen.getOffset()), "0 60 200 210");
}

TEST(Window, DragsByTheLeftButtonOnAnActiveCaptionUntilItIsReleasedOrHidden)
{
    Bench bench(WINDOW);
    bench.user.does("right 100,50; move 110,60; rightup");
    bench.control.getOrder(0)->setInactive(true);
    bench.user.does("down 100,50; move 110,60; up; double 100,50; up");
    EXPECT_EQ(text(bench.control.getArea()), "50 40 250 190");
    bench.control.getOrder(0)->setInactive(false);
    bench.user.does("down 100,50; move 390,290; rightup; move 110,50; hide it; show it; move 9,9");
    EXPECT_EQ(text(bench.control.getArea()), "60 40 260 190");
    EXPECT_EQ(bench.observer.text(), "");
}

TEST(Window, ResizesItsContentWithIt)
{
    Bench bench(WINDOW);
    bench.user.does("double 100,50");
    EXPECT_EQ(text(bench.control.getOrder(1)->getArea()), "0 26 400 300");
    bench.user.does("up; double 100,10");
    EXPECT_EQ(text(bench.control.getOrder(1)->getArea()), "0 26 200 150");
}

TEST(Window, CutsItsCaptionToItsBar)
{
    Bench bench(WINDOW);
    bench.control.setCaption("a caption far too long for a window that is two hundred pixels wide");
    bench.screen.redraw();
    ASSERT_EQ(bench.screen.render.texts.size(), 1u);
    EXPECT_EQ(bench.screen.render.texts[0].position, Vector2f(58, 53));
    EXPECT_EQ(bench.screen.render.texts[0].text.size(), 30u) << "184 pixels, 6 a letter";
}

} // namespace

} // namespace zavex::vellum::test
