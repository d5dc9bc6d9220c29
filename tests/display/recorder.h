#pragma once

#include "display/dis_display.h"
#include "display/dis_event.h"
#include "display/dis_listener.h"

#include <map>
#include <string>
#include <vector>

namespace zavex::test {

/** What several recorders were told, in the order in which they were told. */
using Protocol = std::vector<std::string>;

/** A listener that writes down what it is told, and answers what it was told to answer. */
class Recorder : public display::Listener {
public:
    Recorder(std::string name, Protocol& protocol) : mName{std::move(name)}, mProtocol{protocol} {}

    int onMouseUp(const display::MouseButtonEvent& event) override
    {
        mButton = event;
        return record("mouseup");
    }
    int onMouseDown(const display::MouseButtonEvent& event) override
    {
        mButton = event;
        return record("mousedown");
    }
    int onMouseMove(const display::MouseMoveEvent& event) override
    {
        mMove = event;
        return record("mousemove");
    }
    int onMouseWheel(const display::MouseMoveEvent& event) override
    {
        mMove = event;
        return record("mousewheel");
    }
    int onKeyDown(const display::KeyEvent& event) override
    {
        mKey = event;
        return record("keydown");
    }
    int onKeyUp(const display::KeyEvent& event) override
    {
        mKey = event;
        return record("keyup");
    }
    int onCharDown(const display::CharEvent& event) override
    {
        mChar = event;
        return record("chardown");
    }
    int onCharUp(const display::CharEvent& event) override
    {
        mChar = event;
        return record("charup");
    }
    int onQuit() override { return record("quit"); }
    void onResize(int width, int height) override
    {
        record("resize " + std::to_string(width) + "x" + std::to_string(height));
    }
    void onDraw() override { record("draw"); }

    /** Answers `action` whenever it is told `what`. */
    void answer(const std::string& what, int action) { mAnswers[what] = action; }

    display::KeyEvent mKey; // the last ones
    display::CharEvent mChar;
    display::MouseButtonEvent mButton;
    display::MouseMoveEvent mMove;

private:
    int record(const std::string& what)
    {
        mProtocol.push_back(mName + " " + what);
        const auto answer = mAnswers.find(what);
        return answer == mAnswers.end() ? WHATEVER : answer->second;
    }

    std::string mName;
    Protocol& mProtocol;
    std::map<std::string, int> mAnswers;
};

} // namespace zavex::test
