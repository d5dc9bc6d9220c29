// A screen made of a layout and a style, whatever is done to it. An input is the layout, a zero,
// the style, a zero, and events of five bytes.

#include "common/zvx_system.h"
#include "fuzz/fuzz_target.h"
#include "vellum/probe.h"
#include "vellum/vel_context.h"
#include "vellum/vel_control_factory.h"
#include "xml/xml_parser.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zavex::fuzz {

namespace {

constexpr std::array EVENT_TYPES = {
    vellum::Event::MOUSE_MOVE,  vellum::Event::MOUSE_DOWN, vellum::Event::MOUSE_UP,
    vellum::Event::MOUSE_WHEEL, vellum::Event::KEY_DOWN,   vellum::Event::CHAR_DOWN,
    vellum::Event::CHAR_UP,     vellum::Event::KEY_UP,     vellum::Event::RESET};
constexpr std::size_t EVENT_SIZE = 5; // bytes
constexpr std::size_t MOST_EVENTS = 256;

/** Takes what stands before the first zero off the front of `rest`, and the zero. */
std::string nextText(Bytes& rest)
{
    const auto end = std::ranges::find(rest, std::uint8_t{0});
    const auto size = static_cast<std::size_t>(end - rest.begin());
    std::string text = textOf(rest.first(size));
    rest = rest.subspan(std::min(size + 1, rest.size()));
    return text;
}

vellum::Event eventOf(Bytes bytes)
{
    vellum::Event event;
    event.type = EVENT_TYPES.at(bytes[0] % EVENT_TYPES.size());
    event.mousePos = event.mousePosWorld = {2.0f * bytes[1] - 50.0f, 2.0f * bytes[2] - 50.0f};
    event.mouseDelta = {bytes[3] - 128.0f, bytes[4] - 128.0f};
    event.mouseDeltaWheel = static_cast<float>(bytes[3] % 7) - 3.0f;
    event.button = static_cast<display::MouseButton>(bytes[3] % 3);
    event.doubleClick = bytes[3] >= 128;
    event.control = bytes[4];
    event.key = static_cast<display::Key>(bytes[3]);
    event.keyChar = bytes[3] * (bytes[4] % 32);
    return event;
}

void draw(vellum::test::Screen& screen)
{
    const vellum::Control::Area all(0.0f, 0.0f, 400.0f, 300.0f);
    screen.vellum::Control::draw(all, all, all);
    if (vellum::Context* const menu = screen.getOpen())
        menu->draw(menu->getArea(), all, all);
    screen.render.clear();
    screen.render.time += 0.1f;
}

void use(vellum::test::Screen& screen, Bytes events)
{
    draw(screen);
    for (std::size_t at = 0; at + EVENT_SIZE <= events.size(); at += EVENT_SIZE) {
        vellum::Event event = eventOf(events.subspan(at, EVENT_SIZE));
        screen.handleEvent(event);
        draw(screen);
    }
    screen.resetContext();
}

} // namespace

void layout(Bytes input)
{
    vellum::registerControls();
    xml::XmlParser document;
    xml::XmlParser style;
    vellum::test::Screen screen;
    try {
        document.parse(nextText(input));
        style.parse(nextText(input));
        screen.loadStyle(&style);
        // Without the font sheet that a workspace loads by itself.
        for (auto element = std::as_const(document).createIterator("workspace"); ++element;)
            screen.vellum::Control::load(element);
    } catch (const Exception&) {
        return;
    }
    use(screen, input.first(std::min(input.size(), MOST_EVENTS * EVENT_SIZE)));
}

} // namespace zavex::fuzz
