#include "vellum/probe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <utility>

namespace zavex::vellum::test {

namespace {

std::string namesOf(const Control& parent, Control* (Control::*get)(int) const)
{
    std::string names;
    for (int i = 0; i < parent.getChildCount(); ++i)
        names += (i ? " " : "") + (parent.*get)(i)->getId();
    return names;
}

} // namespace

Probe::Probe(const std::string& name, Area area)
{
    mId = name;
    mType = "probe";
    mArea = area;
}

int Probe::handleEvent(Event& event)
{
    seen.push_back({event.type, event.mousePos, event.action});
    const int answer = result;
    const std::function<void(Event&)> after = onEvent;
    const int handled = Control::handleEvent(event);
    if (after)
        after(event);
    return handled ? handled : answer;
}

void Probe::draw(Area area, Area parent, Area clip)
{
    drawn.push_back({area, parent, clip});
    Control::draw(area, parent, clip);
}

int Probe::count(const std::string& type) const
{
    return static_cast<int>(
        std::ranges::count_if(seen, [&](const Seen& each) { return each.type == type; }));
}

void Screen::setContext(Context* context)
{
    mOpen = context;
    Workspace::setContext(context);
}

void Screen::resetContext()
{
    mOpen = nullptr;
    Workspace::resetContext();
}

void Observer::contextAction(Context*, const std::string& action)
{
    chosen.push_back(action);
    if (onAction)
        onAction();
}

void Observer::controlAction(Control* control, Action action)
{
    heard.push_back({control, action});
    if (onAction)
        onAction();
}

std::string Observer::text() const
{
    constexpr const char* WORDS[] = {"pressed",  "released", "on",    "off",    "color",  "context",
                                     "dropdown", "knob",     "radio", "scroll", "slider", "curve",
                                     "added",    "deleted",  "text",  "tree",   "resize"};
    std::string all;
    for (const Heard& each : heard)
        all += (all.empty() ? "" : " ") + std::string(WORDS[each.action]);
    for (const std::string& each : chosen)
        all += (all.empty() ? "" : " ") + each;
    return all;
}

Probe& addProbe(Control& parent, const std::string& name, Area area)
{
    auto* probe = new Probe(name, area);
    parent.addControl(probe);
    return *probe;
}

Event eventAt(const std::string& type, Vector2f position)
{
    Event event;
    event.type = type;
    event.mousePos = position;
    event.mousePosWorld = position;
    return event;
}

int send(Control& control, const std::string& type, Vector2f position)
{
    Event event = eventAt(type, position);
    return control.handleEvent(event);
}

int pressKey(Control& control, display::Key key, int modifiers)
{
    Event event = eventAt(Event::KEY_DOWN, Vector2f(0.0f, 0.0f));
    event.key = key;
    event.control = modifiers;
    return control.handleEvent(event);
}

void loadFrom(Control& control, const std::string& document)
{
    xml::XmlParser parser;
    parser.parse(document);
    xml::IteratorConst element = std::as_const(parser).createIterator("");
    ASSERT_TRUE(++element);
    control.load(element);
}

std::string stacking(const Control& parent)
{
    return namesOf(parent, &Control::getChild);
}

std::string insertion(const Control& parent)
{
    return namesOf(parent, &Control::getOrder);
}

std::string text(const Area& area)
{
    std::ostringstream out;
    out << area.mMin.x << ' ' << area.mMin.y << ' ' << area.mMax.x << ' ' << area.mMax.y;
    return out.str();
}

} // namespace zavex::vellum::test
