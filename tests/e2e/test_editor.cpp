#include "e2e/program.h"
#include "support/picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace zavex::test {
namespace {

namespace fs = std::filesystem;

constexpr int WIDTH = 720;   // the timeline has room for the whole show beside its scroll bar,
constexpr int HEIGHT = 1500; // and for all bars

constexpr const char* SETTINGS = R"(<demo>
	<time start="30.00" loop="on"/>
	<display width="720" height="1500" fullscreen="off" title="editor"/>
	<osd show="off" location="bottom" delay="2.00"/>
	<music filename="afterglow.ogg" mute="off"/>
	<log console="off"/>
</demo>
)";

const Environment SILENT{
    std::pair{"CADENZA_SEED",   "7"   },
    {"ALSOFT_DRIVERS", "null"}
};

struct Point {
    int x = 0;
    int y = 0;

    Point operator+(const Point& other) const { return {x + other.x, y + other.y}; }
};

// On the timeline with the scripts above: ten pixels a second, the bars from the last effect to the
// first, those that are locked as high as their headers.
constexpr int PLASMA = 20;
constexpr int FLASH = PLASMA + 470;
constexpr int FLASH_LANE = FLASH + 20;
constexpr int PLASMA_TRIGGER = PLASMA + 350;
// Behind the border.
constexpr Point PLASMA_SWATCHES{451, PLASMA + 20 + 50 + 15};

constexpr int PANELS = 676;         // where the editor begins
constexpr int STATUS = HEIGHT - 36; // where it shows the speed
constexpr Point NOWHERE{360, 60};   // beside the editor

constexpr unsigned MAGENTA = 0xff00ff; // colours as 0xRRGGBB

/** The first pixel of a colour, row by row. */
std::optional<Point> find(const Picture& picture, unsigned colour)
{
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            if (pixelAt(picture, x, y) == colour)
                return Point{x, y};
    return std::nullopt;
}

/** The rows of a picture that show the editor, without its speed. */
Picture panels(const Picture& picture)
{
    constexpr int ROW = 3 * WIDTH; // bytes
    return {
        WIDTH,
        STATUS - PANELS,
        {picture.rgb.begin() + PANELS * ROW, picture.rgb.begin() + STATUS * ROW}
    };
}

/** What a screen shows. */
Picture capture(const VirtualScreen& screen)
{
    const std::unique_ptr<Display, int (*)(Display*)> server(XOpenDisplay(screen.display().c_str()),
                                                             XCloseDisplay);
    if (!server)
        throw std::runtime_error("no screen " + screen.display());
    XImage* const image = XGetImage(server.get(), XDefaultRootWindow(server.get()), 0, 0, WIDTH,
                                    HEIGHT, AllPlanes, ZPixmap);
    Picture picture{WIDTH, HEIGHT, {}};
    for (int y = 0; y < HEIGHT; ++y) {
        for (int x = 0; x < WIDTH; ++x) {
            const unsigned long pixel = XGetPixel(image, x, y);
            for (const int shift : {16, 8, 0})
                picture.rgb.push_back(static_cast<std::uint8_t>(pixel >> shift & 0xff));
        }
    }
    XDestroyImage(image);
    return picture;
}

/** Sends real movements and buttons to a screen. */
class Mouse {
public:
    explicit Mouse(const VirtualScreen& screen) : mScreen(screen) {}

    void move(Point to) const { send({"mousemove", std::to_string(to.x), std::to_string(to.y)}); }
    void drag(Point from, Point distance) const
    {
        move(from);
        send({"mousedown", "1"});
        move(from + distance);
        send({"mouseup", "1"});
    }
    void click(Point at) const { drag(at, {}); }

private:
    void send(std::vector<std::string> command) const
    {
        command.insert(command.begin(), "xdotool");
        runOnScreen(mScreen, command);
    }

    const VirtualScreen& mScreen;
};

struct Editor : testing::Test {
    Editor()
    {
        mShow.write("setup.local.xml", SETTINGS);
        // As they are saved. At the start time `clear` alone gives the picture its colour.
        fs::copy(CADENZA_TEST_SOURCE_DIR "/scripts", mShow.path("script"),
                 fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    }

    /** One run of the program, paused at the start time, with the editor open. */
    struct Run {
        explicit Run(const Editor& test)
            : screen(test.mScreen), program(test.mShow.path(), screen, SILENT),
              keyboard(screen, "editor"), mouse(screen)
        {}

        bool open()
        {
            mouse.move(NOWHERE);
            if (program.waitForLine("---") < 0)
                return false;
            keyboard.press("space");
            if (!timeIs(30.0) || find(picture(), MAGENTA))
                return false;
            keyboard.press("Tab");
            if (!wait([&] { return find(picture(), MAGENTA).has_value(); }))
                return false;
            const Point swatches = *find(picture(), MAGENTA);
            origin = {swatches.x - PLASMA_SWATCHES.x, swatches.y - PLASMA_SWATCHES.y};
            return true;
        }

        Picture picture() const { return capture(screen); }

        /** Asks again and again: a frame may take a while in software. */
        bool wait(const std::function<bool()>& holds)
        {
            for (int attempt = 0; attempt < 300; ++attempt) {
                if (holds())
                    return true;
                program.listen(0.1);
            }
            return false;
        }

        double demoTime()
        {
            const std::size_t from = program.lines().size();
            keyboard.press("p");
            const int line = program.waitForLine("[onKeyDown], ", from);
            return line < 0 ? -1.0 : demoTimeIn(program.lines()[static_cast<std::size_t>(line)]);
        }

        /** Returns to the start marker. */
        bool timeIs(double expected)
        {
            return wait([&] {
                keyboard.press("t");
                return std::abs(demoTime() - expected) < 1e-4;
            });
        }

        /** Waits until what was pressed and moved so far is seen: keys are answered before a frame,
            so that the next answer comes behind it. */
        bool settle() { return demoTime() >= 0.0 && demoTime() >= 0.0 && demoTime() >= 0.0; }

        const VirtualScreen& screen;
        Program program;
        Keyboard keyboard;
        Mouse mouse;
        Point origin;
    };

    VirtualScreen mScreen{"720x1500"};
    ShowCopy mShow{"<display/>"};
};

/** A text with one part replaced, which must be there. */
std::string with(std::string text, const std::string& part, const std::string& replacement)
{
    const std::size_t at = text.find(part);
    EXPECT_NE(at, std::string::npos) << part;
    return at == std::string::npos ? text : text.replace(at, part.size(), replacement);
}

TEST_F(Editor, SavesWhatWasDraggedAndNothingElse)
{
    const Point barHandle = Point{150, FLASH + 10};
    Files expected = mShow.scripts();
    Picture left;
    {
        Run run(*this);
        ASSERT_TRUE(run.open()) << run.program.output();
        const Point origin = run.origin;
        const Picture before = run.picture();

        run.mouse.drag(origin + Point{120, FLASH_LANE + 12}, {20, 6});
        run.mouse.drag(origin + Point{120, FLASH + 10}, {30, 0});
        run.mouse.drag(origin + Point{500, PLASMA_TRIGGER + 10}, {20, 0});
        run.mouse.drag(origin + Point{300, 10}, {30, 0}); // locked
        run.keyboard.press("m");

        const double time = run.demoTime();
        run.keyboard.press("Right");
        EXPECT_TRUE(run.wait([&] { return std::abs(run.demoTime() - time - 5.0) < 1e-4; }));
        EXPECT_TRUE(run.timeIs(30.0));

        run.mouse.click(origin + barHandle);
        run.mouse.move(NOWHERE);
        EXPECT_TRUE(run.settle());
        left = run.picture();
        EXPECT_GT(differenceOf(panels(before), panels(left)).mean, 0.5);

        run.keyboard.press("Escape");
        EXPECT_EQ(run.program.waitForEnd(), 0) << run.program.output();
    }

    for (auto& [name, content] : expected) {
        if (name == "flash.flash.xml")
            content = with(with(content, "start=\"2\" end=\"22\"", "start=\"5\" end=\"25\""),
                           "time=\"0.5\" value=\"0.5\"", "time=\"0.6\" value=\"0.28\"");
        else if (name == "plasma.plasma.xml")
            content = with(content, "delay=\"2\"", "delay=\"3\"");
    }
    EXPECT_EQ(mShow.scripts(), expected);
    EXPECT_EQ(mShow.read("setup.local.xml"), with(SETTINGS, "mute=\"off\"", "mute=\"on\""));

    Run run(*this);
    ASSERT_TRUE(run.open()) << run.program.output();
    run.mouse.click(run.origin + barHandle);
    run.mouse.move(NOWHERE);
    EXPECT_TRUE(run.settle());
    const Picture again = run.picture();
    EXPECT_LT(differenceOf(panels(left), panels(again)).mean, 0.01);
    EXPECT_LT(differenceOf(left, again).mean, 1.5); // the grain differs from frame to frame

    const Files before = mShow.scripts();
    run.mouse.drag(run.origin + barHandle, {30, 0});
    run.keyboard.press("m");
    fs::permissions(mShow.path("script/flash.flash.xml"), fs::perms::owner_read);
    run.keyboard.press("Escape");
    EXPECT_EQ(run.program.waitForEnd(), 1) << run.program.output();
    EXPECT_EQ(mShow.scripts(), before);
    EXPECT_GE(run.program.waitForLine("cadenza: could not save 'script/flash.flash.xml': "
                                      "Permission denied",
                                      0, 0.0),
              0)
        << run.program.output();
    EXPECT_EQ(mShow.read("setup.local.xml"), SETTINGS);
}

TEST_F(Editor, SavesWhatWasDraggedWhenTheScreenEnds)
{
    Run run(*this);
    ASSERT_TRUE(run.open()) << run.program.output();
    run.mouse.drag(run.origin + Point{120, FLASH + 10}, {30, 0});
    EXPECT_TRUE(run.settle());
    kill(mScreen.pid(), SIGKILL);
    EXPECT_EQ(run.program.waitForEnd(), 1) << run.program.output();
    EXPECT_NE(mShow.read("script/flash.flash.xml").find("start=\"5\" end=\"25\""),
              std::string::npos);
}

} // namespace
} // namespace zavex::test
