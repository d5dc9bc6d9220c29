#include "vellum/user.h"

#include "vellum/vel_control_factory.h"
#include "vellum/vel_vellum.h"

#include "xml/xml_iteratorconst.h"
#include "xml/xml_parser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <sstream>
#include <utility>

namespace zavex::vellum::test {

namespace {

constexpr std::string_view BLANKS = " \n\t";

constexpr struct {
    std::string_view name;
    display::Key key;
} KEYS[] = {
    {"LEFT",     display::KEY_LEFT     },
    {"RIGHT",    display::KEY_RIGHT    },
    {"UP",       display::KEY_UP       },
    {"DOWN",     display::KEY_DOWN     },
    {"HOME",     display::KEY_HOME     },
    {"END",      display::KEY_END      },
    {"PAGEUP",   display::KEY_PAGEUP   },
    {"PAGEDOWN", display::KEY_PAGEDOWN },
    {"INSERT",   display::KEY_INSERT   },
    {"DEL",      display::KEY_DEL      },
    {"BACK",     display::KEY_BACKSPACE},
    {"ENTER",    display::KEY_ENTER    },
    {"KP_ENTER", display::KEY_KP_ENTER },
    {"SPACE",    display::KEY_SPACE    },
    {"ESC",      display::KEY_ESC      },
    {"TAB",      display::KEY_TAB      },
    {"F1",       display::KEY_F1       },
};

constexpr struct {
    std::string_view name;
    int modifier;
} MODIFIERS[] = {
    {"SHIFT", display::KEYMOD_LSHIFT},
    {"CTRL",  display::KEYMOD_RCTRL },
    {"ALT",   display::KEYMOD_LALT  },
};

std::string_view trimmed(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return text.substr(0, text.find_last_not_of(BLANKS) + 1);
}

/** Takes off `text` what stands before the first of some characters. */
std::string_view takeUpTo(std::string_view& text, std::string_view ends)
{
    const std::size_t end = std::min(text.find_first_of(ends), text.size());
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return taken;
}

[[noreturn]] void refuse(std::string_view step)
{
    throw Exception("No user can '%s'", std::string(step).c_str());
}

float numberOf(std::string_view text)
{
    float value = 0.0f;
    const char* const end = text.data() + text.size();
    if (std::from_chars(text.data(), end, value).ptr != end || text.empty())
        refuse(text);
    return value;
}

display::Key keyOf(std::string_view name)
{
    for (const auto& each : KEYS)
        if (each.name == name)
            return each.key;
    if (name.size() != 1)
        refuse(name);
    return static_cast<display::Key>(std::toupper(name[0]));
}

/** Takes the modifiers, each with a '+' or a blank behind it, off the front of `text`. */
int takeModifiers(std::string_view& text)
{
    int held = display::KEYMOD_NONE;
    for (const auto& [name, modifier] : MODIFIERS)
        if (text.starts_with(name) && text.size() > name.size()) {
            held |= modifier;
            text.remove_prefix(name.size() + 1);
        }
    return held;
}

} // namespace

void User::does(std::string_view steps)
{
    SCOPED_TRACE(steps);
    for (int step = 1; !steps.empty(); ++step) {
        SCOPED_TRACE("step " + std::to_string(step));
        std::string_view rest = trimmed(takeUpTo(steps, ";"));
        const std::string_view verb = takeUpTo(rest, BLANKS);
        doStep(verb, rest);
    }
}

void User::doStep(std::string_view verb, std::string_view rest)
{
    if (verb == "=")
        EXPECT_EQ(mState(), rest);
    else if (verb == "used" || verb == "unused")
        EXPECT_EQ(mAnswer != 0, verb == "used");
    else if (verb == "wheel")
        turnWheel(rest);
    else if (verb == "key")
        pressKeys(rest);
    else if (verb == "type")
        type(rest);
    else if (verb == "pick")
        pick(rest);
    else if (verb == "reset")
        send(mScreen, "reset", {});
    else if (!doPointer(verb, rest) && !doToControl(verb, rest))
        refuse(verb);
}

bool User::doPointer(std::string_view verb, std::string_view rest)
{
    constexpr std::string_view VERBS[] = {"move",   "down",  "up",     "click",
                                          "double", "right", "rightup"};
    if (std::ranges::find(VERBS, verb) == std::end(VERBS))
        return false;
    if (!rest.empty())
        moveTo(rest);
    const bool clicks = verb == "click" || verb == "double";
    if (clicks || verb == "down")
        mAnswer = mMouse.press();
    if (clicks || verb == "up")
        mAnswer = mMouse.release();
    if (verb == "double")
        mAnswer = mMouse.press(display::MOUSE_LEFT, true);
    if (verb == "right" || verb == "rightup")
        mAnswer = verb == "right" ? mMouse.press(display::MOUSE_RIGHT)
                                  : mMouse.release(display::MOUSE_RIGHT);
    return true;
}

bool User::doToControl(std::string_view verb, std::string_view id)
{
    Control* const control = mScreen.findControl(std::string(id));
    if (!control)
        return false;
    if (verb == "hide" || verb == "show")
        control->setVisible(verb == "show");
    else if (verb == "disable" || verb == "enable")
        control->setInactive(verb == "disable");
    else if (verb == "focus")
        control->setFocus(nullptr);
    else
        return false;
    return true;
}

void User::moveTo(std::string_view place)
{
    const int modifiers = takeModifiers(place);
    const float x = numberOf(takeUpTo(place, ","));
    mAnswer = mMouse.moveTo(origin + Vector2f(x, numberOf(place)), modifiers);
}

void User::turnWheel(std::string_view steps)
{
    const int modifiers = takeModifiers(steps);
    mAnswer = mMouse.turnWheel(numberOf(steps), modifiers);
}

void User::pressKeys(std::string_view names)
{
    bool allUsed = true;
    while (!names.empty()) {
        std::string_view name = takeUpTo(names, BLANKS);
        const int modifiers = takeModifiers(name);
        allUsed = pressKey(mScreen, keyOf(name), modifiers) != 0 && allUsed;
    }
    mAnswer = allUsed ? 1 : 0;
}

void User::type(std::string_view characters)
{
    for (const char character : characters) {
        Event event = eventAt("keychardown", {0.0f, 0.0f});
        event.keyChar = static_cast<unsigned char>(character);
        mAnswer = mScreen.handleEvent(event);
    }
}

void User::pick(std::string_view path)
{
    constexpr Vector2f IN_FIRST_ROW(6.0f, 10.0f);
    constexpr float ROW = 15.0f; // pixels from one row to the next
    Control* menu = mScreen.getOpen();
    Vector2f corner(0.0f, 0.0f);
    while (!path.empty()) {
        const std::string_view caption = takeUpTo(path, "/");
        int row = 0;
        while (menu && menu->getOrder(row) && menu->getOrder(row)->getCaption() != caption)
            ++row;
        if (!menu || !menu->getOrder(row))
            throw Exception("No open menu has a row '%s'", std::string(caption).c_str());
        corner += menu->getArea().mMin;
        mMouse.moveTo(corner + IN_FIRST_ROW + Vector2f(0.0f, ROW * static_cast<float>(row)));
        menu = menu->getOrder(row);
    }
    mAnswer = mMouse.release();
}

Control& addLoaded(Control& parent, const std::string& element)
{
    registerControls();
    xml::XmlParser parser;
    parser.parse("<vellum>" + element + "</vellum>");
    xml::IteratorConst found = std::as_const(parser).createIterator("");
    if (!++found)
        throw Exception("'%s' is no element", element.c_str());
    Control* const control = controlFactory.create(found->getName());
    if (!control)
        throw Exception("There is no control '%s'", found->getName().c_str());
    parent.addControl(control);
    control->load(found);
    return *control;
}

std::string number(float value)
{
    std::ostringstream out;
    out << std::round(value * 1e4f) / 1e4f + 0.0f;
    return out.str();
}

} // namespace zavex::vellum::test
