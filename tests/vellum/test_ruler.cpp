#include "vellum/user.h"
#include "vellum/vel_ruler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

namespace zavex::vellum::test {

namespace {

const Area PLACE(30, 40, 280, 140);

struct RulerBench : Bench<Ruler> {
    RulerBench() : Bench("<ruler><area x='30' y='40' w='250' h='100'/></ruler>") {}

    void draw(Area area = PLACE, Area clip = PLACE)
    {
        screen.render.clear();
        control.draw(area, screen.getArea(), clip);
    }

    /** Distances from the left edge of the ticks whose tops lie `top` pixels below the ruler's. */
    std::string ticks(float top) const
    {
        std::string distances;
        for (const Area& box : screen.render.boxes)
            if (box.getWidth() == 2.0f && box.mMin.y == PLACE.mMin.y + top &&
                box.mMax.y == PLACE.mMin.y + 25.0f)
                distances += number(box.mMin.x + 1.0f - PLACE.mMin.x) + " ";
        return distances;
    }

    /** What is written at a distance from the left edge; null when nothing is. */
    const RecordingRender::Text* textAt(float x) const
    {
        const auto found = std::ranges::find(screen.render.texts, PLACE.mMin.x + x,
                                             [](const auto& each) { return each.position.x; });
        return found == screen.render.texts.end() ? nullptr : &*found;
    }

    /** The texts except the read-out. */
    std::string labels() const
    {
        std::string all;
        for (std::size_t i = 0; i + 1 < screen.render.texts.size(); ++i)
            all += screen.render.texts[i].text + " ";
        return all;
    }
};

constexpr struct TickCase {
    const char* name;
    float scale;
    float interval;
    float subIntervals;
    float width; // of the ruler
    int smallTicks;
    const char* lastSmallTick;
    const char* labelled;
    const char* labels;
} TICK_CASES[] = {
    {"Defaults",              0.1f,  10.0f, 10.0f,   250.0f, 25,  "240 ", "0 100 200 ",        "10.0 20.0 "       },
    {"TheRightEdgeHasNoTick", 0.1f,  10.0f, 10.0f,   200.0f, 20,  "190 ", "0 100 ",            "10.0 "            },
    {"Zoomed",                0.05f, 2.5f,  5.0f,    250.0f, 25,  "240 ", "0 50 100 150 200 ", "2.5 5.0 7.5 10.0 "},
    {"NoRoom",                0.1f,  10.0f, 10.0f,   0.0f,   0,   "",     "",                  ""                 },
    {"CloserThanPixels",      0.1f,  10.0f, 1000.0f, 250.0f, 250, "249 ", "0 100 200 ",        "10.0 20.0 "       },
    {"NoScale",               0.0f,  10.0f, 10.0f,   250.0f, 0,   "",     "",                  ""                 },
    {"NoSubIntervals",        0.1f,  10.0f, 0.0f,    250.0f, 0,   "",     "0 100 200 ",        "10.0 20.0 "       },
};

TEST(Ruler, TicksStandAtTheirIntervals)
{
    for (const TickCase& row : TICK_CASES) {
        SCOPED_TRACE(row.name);
        RulerBench bench;
        bench.control.setScale(row.scale);
        bench.control.setInterval(row.interval);
        bench.control.setSubIntervals(row.subIntervals);
        bench.draw(Area(30, 40, 30 + row.width, 140));
        const std::string small = bench.ticks(20.0f);
        EXPECT_EQ(std::ranges::count(small, ' '), row.smallTicks);
        EXPECT_TRUE(small.empty() || small.starts_with("0 "));
        EXPECT_TRUE(small.ends_with(row.lastSmallTick)) << small;
        EXPECT_EQ(bench.ticks(15.0f), row.labelled);
        EXPECT_EQ(bench.labels(), row.labels);
    }
}

TEST(Ruler, DrawsOnlyWhatTheClipMayShow)
{
    RulerBench bench;
    bench.draw(Area(30.0f - 1e6f, 40.0f, 30.0f + 1e9f, 140.0f));
    EXPECT_LE(bench.screen.render.boxes.size(), 70u);
    ASSERT_NE(bench.textAt(100.0f), nullptr);
    EXPECT_EQ(bench.textAt(100.0f)->text, "100010.0");
}

TEST(Ruler, FadeMakesRoomForTheReadOut)
{
    // Distances of the pointer from the left edge, and how opaque the label at 100 is.
    for (const auto& [pointer, alpha] : {
             std::pair(70.0f, 0.0f), {60.0f,  0.5f},
               {140.0f, 0.5f},
               {50.0f,  1.0f}
    }) {
        SCOPED_TRACE(pointer);
        RulerBench bench;
        bench.user.origin = PLACE.mMin;
        bench.user.does("move " + number(pointer) + ",10");
        bench.draw();
        const RecordingRender::Text* label = bench.textAt(100.0f);
        EXPECT_NEAR(label ? label->color.w : 0.0f, alpha, 1e-5f);
        ASSERT_NE(bench.textAt(pointer), nullptr) << "the read-out";
        EXPECT_NEAR(std::stof(bench.textAt(pointer)->text), pointer / 10.0f, 0.01f);
    }
}

constexpr struct MarkerCase {
    const char* name;
    float first;
    float second;
    const char* steps;
    const char* lines;
} MARKER_CASES[] = {
    {"None",           -1.0f, -1.0f, "",             ""                                            },
    {"NotAtTheOrigin", 0.0f,  0.0f,  "",             ""                                            },
    {"Second",         -1.0f, 20.0f, "move 130,150", "50 65 51 140, "                              },
    {"All",            9.0f,  5.0f,  "move 130,100", "39 65 40 140, 35 65 36 140, 130 65 131 140, "},
};

TEST(Ruler, MarkersCrossTheContentBelowTheStrip)
{
    for (const MarkerCase& row : MARKER_CASES) {
        SCOPED_TRACE(row.name);
        RulerBench bench;
        Probe& content = addProbe(bench.control, "content", Area(5, 5, 100, 50));
        ASSERT_EQ(bench.control.getChildCount(), 1);
        EXPECT_EQ(content.getParent(), bench.control.getChild(0));
        EXPECT_EQ(text(bench.control.getChild(0)->getArea()), "0 25 250 100");
        EXPECT_EQ(text(content.getAreaWorld()), "35 70 130 115");
        bench.control.setShadow(row.first);
        bench.control.setShadow2(row.second);
        bench.user.does(row.steps);
        const Area clip(30, 40, 200, 140);
        bench.draw(PLACE, clip);

        std::string lines;
        for (const Area& box : bench.screen.render.boxes)
            if (box.getWidth() == 1.0f)
                lines += text(box) + ", ";
        EXPECT_EQ(lines, row.lines);
        EXPECT_EQ(content.drawn.size(), 1u);
        EXPECT_EQ(text(bench.screen.render.clips.back()), text(clip)) << "the content's is over";
        bench.user.does("move 60,80");
        bench.draw();
        EXPECT_EQ(content.count(Event::MOUSE_MOVE), 1) << "the content hears of the pointer, too";
        EXPECT_EQ(bench.screen.render.texts.back().text, "3.0");
    }
}

} // namespace

} // namespace zavex::vellum::test
