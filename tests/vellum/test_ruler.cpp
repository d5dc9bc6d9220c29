#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_ruler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace zavex::vellum::test {

namespace {

const Area PLACE(30, 40, 280, 140);

struct RulerTest : testing::Test {
    RulerTest() { reset(); }

    void reset()
    {
        root.deleteControls();
        root.addControl(ruler = new Ruler);
        ruler->setArea(PLACE);
    }

    void draw() { draw(PLACE, PLACE); }

    void draw(Area area, Area clip)
    {
        root.render.clear();
        ruler->draw(area, root.getArea(), clip);
    }

    /** Distances from the left edge of the ticks whose tops lie `top` pixels below the ruler's. */
    std::vector<float> ticks(float top) const
    {
        std::vector<float> distances;
        for (const Area& box : root.render.boxes)
            if (box.getWidth() == 2.0f && box.mMin.y == PLACE.mMin.y + top &&
                box.mMax.y == PLACE.mMin.y + 25.0f)
                distances.push_back(box.mMin.x + 1.0f - PLACE.mMin.x);
        return distances;
    }

    /** What is written at a distance from the left edge; null when nothing is. */
    const RecordingRender::Text* textAt(float x) const
    {
        const auto found = std::ranges::find_if(root.render.texts, [x](const auto& each) {
            return each.position.x == PLACE.mMin.x + x;
        });
        return found == root.render.texts.end() ? nullptr : &*found;
    }

    /** The texts except the read-out. */
    std::string labels() const
    {
        std::string all;
        for (std::size_t i = 0; i + 1 < root.render.texts.size(); ++i)
            all += (i ? " " : "") + root.render.texts[i].text;
        return all;
    }

    Root root{Area(0, 0, 400, 200)};
    Ruler* ruler = nullptr;
    Mouse mouse{root};
};

const struct TickCase {
    const char* name;
    float scale;
    float interval;
    float subIntervals;
    float width; // of the ruler
    std::size_t smallTicks;
    float lastSmallTick;
    std::vector<float> labelled;
    const char* labels;
} TICK_CASES[] = {
    {"Defaults",              0.1f,  10.0f, 10.0f,   250.0f, 25,  240.0f, {0, 100, 200},          "10.0 20.0"       },
    {"TheRightEdgeHasNoTick", 0.1f,  10.0f, 10.0f,   200.0f, 20,  190.0f, {0, 100},               "10.0"            },
    {"Zoomed",                0.05f, 2.5f,  5.0f,    250.0f, 25,  240.0f, {0, 50, 100, 150, 200}, "2.5 5.0 7.5 10.0"},
    {"NoRoom",                0.1f,  10.0f, 10.0f,   0.0f,   0,   0.0f,   {},                     ""                },
    {"CloserThanPixels",      0.1f,  10.0f, 1000.0f, 250.0f, 250, 249.0f, {0, 100, 200},          "10.0 20.0"       },
    {"NoScale",               0.0f,  10.0f, 10.0f,   250.0f, 0,   0.0f,   {},                     ""                },
    {"NoSubIntervals",        0.1f,  10.0f, 0.0f,    250.0f, 0,   0.0f,   {0, 100, 200},          "10.0 20.0"       },
};

TEST_F(RulerTest, TicksStandAtTheirIntervals)
{
    for (const TickCase& row : TICK_CASES) {
        SCOPED_TRACE(row.name);
        reset();
        ruler->setScale(row.scale);
        ruler->setInterval(row.interval);
        ruler->setSubIntervals(row.subIntervals);
        Area area = PLACE;
        area.mMax.x = area.mMin.x + row.width;
        draw(area, PLACE);

        const std::vector<float> small = ticks(20.0f);
        ASSERT_EQ(small.size(), row.smallTicks);
        if (!small.empty()) {
            EXPECT_EQ(small.front(), 0.0f);
            EXPECT_EQ(small.back(), row.lastSmallTick);
        }
        EXPECT_EQ(ticks(15.0f), row.labelled);
        EXPECT_EQ(labels(), row.labels);
    }
}

TEST_F(RulerTest, DrawsOnlyWhatTheClipMayShow)
{
    draw(Area(30.0f - 1e6f, 40.0f, 30.0f + 1e9f, 140.0f), PLACE);
    EXPECT_LE(root.render.boxes.size(), 70u);
    ASSERT_NE(textAt(100.0f), nullptr);
    EXPECT_EQ(textAt(100.0f)->text, "100010.0");
}

constexpr struct FadeCase {
    const char* name;
    float pointer; // pixels from the left edge
    float alpha;   // of the label at 100 pixels; 0 when it is not drawn
} FADE_CASES[] = {
    {"JustInvisible", 70.0f,  0.0f},
    {"HalfWayLeft",   60.0f,  0.5f},
    {"HalfWayRight",  140.0f, 0.5f},
    {"JustWhole",     50.0f,  1.0f},
};

TEST_F(RulerTest, FadeMakesRoomForTheReadOut)
{
    for (const FadeCase& row : FADE_CASES) {
        SCOPED_TRACE(row.name);
        reset();
        mouse.moveTo(PLACE.mMin + Vector2f(row.pointer, 10.0f));
        draw();
        const RecordingRender::Text* label = textAt(100.0f);
        EXPECT_NEAR(label ? label->color.w : 0.0f, row.alpha, 1e-5f);
        ASSERT_NE(textAt(row.pointer), nullptr) << "the read-out";
        EXPECT_NEAR(std::stof(textAt(row.pointer)->text), row.pointer / 10.0f, 0.01f);
    }
}

const struct MarkerCase {
    const char* name;
    float first;
    float second;
    bool over;
    std::vector<const char*> lines;
} MARKER_CASES[] = {
    {"None",           -1.0f, -1.0f, false, {}                                                },
    {"NotAtTheOrigin", 0.0f,  0.0f,  false, {}                                                },
    {"Second",         -1.0f, 20.0f, false, {"50 65 51 140"}                                  },
    {"All",            9.0f,  5.0f,  true,  {"39 65 40 140", "35 65 36 140", "130 65 131 140"}},
};

TEST_F(RulerTest, MarkersCrossTheContent)
{
    for (const MarkerCase& row : MARKER_CASES) {
        SCOPED_TRACE(row.name);
        reset();
        const Probe& content = addProbe(*ruler, "content", Area(0, 0, 250, 50));
        ruler->setShadow(row.first);
        ruler->setShadow2(row.second);
        mouse.moveTo(Vector2f(130.0f, row.over ? 100.0f : 150.0f));
        const Area clip(30, 40, 200, 140);
        draw(PLACE, clip);

        std::vector<std::string> lines;
        for (const Area& box : root.render.boxes)
            if (box.getWidth() == 1.0f)
                lines.push_back(text(box));
        EXPECT_EQ(lines, std::vector<std::string>(row.lines.begin(), row.lines.end()));
        EXPECT_EQ(content.drawn.size(), 1u);
        EXPECT_EQ(text(root.render.clips.back()), text(clip)) << "the content's clip is over";
    }
}

TEST_F(RulerTest, KeepsContentBelowTheStripInAFrameOfItsOwn)
{
    Probe& content = addProbe(*ruler, "content", Area(5, 5, 100, 50));
    ASSERT_EQ(ruler->getChildCount(), 1);
    EXPECT_EQ(content.getParent(), ruler->getChild(0));
    EXPECT_EQ(text(ruler->getChild(0)->getArea()), "0 25 250 100");
    EXPECT_EQ(text(content.getAreaWorld()), "35 70 130 115");

    mouse.moveTo(Vector2f(60, 80));
    EXPECT_EQ(content.count("mousemove"), 1) << "the content hears of the pointer as well";
    draw();
    EXPECT_EQ(root.render.texts.back().text, "3.0");
}

} // namespace

} // namespace zavex::vellum::test
