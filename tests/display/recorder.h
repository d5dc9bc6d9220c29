#pragma once

#include "display/dis_display.h"
#include "display/dis_event.h"
#include "display/dis_listener.h"

#include <map>
#include <string>
#include <vector>

namespace zavex::display {

/** What several recorders were told, in the order in which they were told. */
using Protocol = std::vector<std::string>;

/** A listener that writes down what it is told, and answers what it was told to answer. */
class Recorder : public Listener {
public:
    Recorder(std::string name, Protocol& protocol) : mName{std::move(name)}, mProtocol{protocol} {}

    int onMouseUp(const MouseButtonEvent& e) override { return keep("mouseup", mButton, e); }
    int onMouseDown(const MouseButtonEvent& e) override { return keep("mousedown", mButton, e); }
    int onMouseMove(const MouseMoveEvent& e) override { return keep("mousemove", mMove, e); }
    int onMouseWheel(const MouseMoveEvent& e) override { return keep("mousewheel", mMove, e); }
    int onKeyDown(const KeyEvent& e) override { return keep("keydown", mKey, e); }
    int onKeyUp(const KeyEvent& e) override { return keep("keyup", mKey, e); }
    int onCharDown(const CharEvent& e) override { return keep("chardown", mChar, e); }
    int onCharUp(const CharEvent& e) override { return keep("charup", mChar, e); }
    int onQuit() override { return record("quit"); }
    void onResize(int width, int height) override
    {
        record("resize " + std::to_string(width) + "x" + std::to_string(height));
    }
    void onDraw() override { record("draw"); }

    /** Answers `action` whenever it is told `what`. */
    void answer(const std::string& what, int action) { mAnswers[what] = action; }

    KeyEvent mKey; // the last ones
    CharEvent mChar;
    MouseButtonEvent mButton;
    MouseMoveEvent mMove;

private:
    template <typename Event>
    int keep(const char* what, Event& last, const Event& event)
    {
        last = event;
        return record(what);
    }

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

} // namespace zavex::display
