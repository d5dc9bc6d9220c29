#pragma once

#include "vellum/mouse.h"
#include "vellum/probe.h"

#include <functional>
#include <string>
#include <string_view>

namespace zavex::vellum::test {

/**
 * A user at a screen, who does what is written down: steps with semicolons between them.
 *
 * | step                     | what it does                                                      |
 * |--------------------------|-------------------------------------------------------------------|
 * | `move 20,15`             | moves the pointer; `move CTRL 20,15` with a modifier held         |
 * | `down`, `up`             | presses, releases the left button; `down 20,15` moves there first |
 * | `right`, `rightup`       | the same with the right button                                    |
 * | `click`, `double`        | down and up; a click, and the second press of a double click      |
 * | `wheel -2`               | turns the wheel by so many steps; `wheel CTRL -2`                 |
 * | `key LEFT SHIFT+CTRL+a`  | presses keys one after the other                                  |
 * | `type abc`               | types Latin-1 characters, up to the next semicolon                |
 * | `pick type/square`       | releases over a row of the open menu, along its submenus          |
 * | `reset`                  | lets the whole screen forget where the pointer is                 |
 * | `hide id`, `show id`, `disable id`, `enable id`, `focus id` | does so to a control           |
 * | `used`, `unused`         | expects that the last event, or every key, was kept from others   |
 * | `= text`                 | expects that this is the state, as `state` says                   |
 *
 * A step that cannot be done ends in an Exception.
 */
class User {
public:
    /** @param state  What `=` asks for. */
    explicit User(Screen& screen, std::function<std::string()> state = {})
        : mScreen(screen), mState(std::move(state))
    {}

    void does(std::string_view steps);

    /** Where the positions of the steps count from, in pixels of the screen. */
    Vector2f origin{0.0f, 0.0f};

private:
    void doStep(std::string_view verb, std::string_view rest);
    bool doPointer(std::string_view verb, std::string_view rest);
    bool doToControl(std::string_view verb, std::string_view id);
    void moveTo(std::string_view place);
    void turnWheel(std::string_view steps);
    void pressKeys(std::string_view names);
    void type(std::string_view characters);
    void pick(std::string_view path);

    Screen& mScreen;
    std::function<std::string()> mState;
    Mouse mMouse{mScreen};
    int mAnswer = 0; // of the last event
};

/** A new control of what an element says, owned by `parent`; every type of the GUI is known. */
Control& addLoaded(Control& parent, const std::string& element);

/** One control of a screen of 400 x 300, as its element says, with an observer of its own. */
template <typename Kind = Control>
struct Bench {
    explicit Bench(const std::string& element)
        : control(dynamic_cast<Kind&>(addLoaded(screen, element)))
    {
        control.setName("it");
        control.setCallback(&observer);
    }

    Screen screen;
    Observer observer;
    Kind& control; // owned by the screen
    User user{screen};
};

/** A number as it is written in states: four places at most. */
std::string number(float value);

} // namespace zavex::vellum::test
