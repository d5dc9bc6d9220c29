#include "vellum/vel_vellum.h"

#include "vellum/vel_control_factory.h"

#include "am/am.h"
#include "common/zvx_system.h"
#include "display/dis_display.h"
#include "display/dis_display_obsolete.h"
#include "display/dis_event.h"
#include "mathbase/mb_random.h"
#include "xml/xml_iteratorconst.h"
#include "xml/xml_parser.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <utility>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr const char* ROOT_ELEMENT = "vellum";

/** A document of the display's archive; null when there is no such file. */
std::unique_ptr<xml::XmlParser> readDocument(display::DisplayGL& display,
                                             const std::string& fileName)
{
    am::ArchiveManager* const archive = display.getArchive();
    const am::File file = archive ? archive->readFile(fileName, -1) : am::File();
    if (file.isNull())
        return nullptr;
    auto document = std::make_unique<xml::XmlParser>();
    document->parse(file->bytes(), fileName);
    return document;
}

bool isVellum(const xml::XmlParser& document)
{
    return document.createIterator("").getRoot().getName() == ROOT_ELEMENT;
}

Event eventOf(const char* type, const display::Event& header)
{
    Event event;
    static_cast<display::Event&>(event) = header;
    event.type = type;
    return event;
}

Event buttonEvent(const char* type, const display::MouseButtonEvent& button)
{
    Event event = eventOf(type, button);
    event.button = button.button;
    return event;
}

Event keyEvent(const char* type, const display::KeyEvent& key)
{
    Event event = eventOf(type, key);
    event.key = key.key;
    return event;
}

Event charEvent(const char* type, const display::CharEvent& character)
{
    Event event = eventOf(type, character);
    event.keyChar = character.key;
    return event;
}

} // namespace

Vellum::Vellum(display::DisplayGL* newDisplay) : Listener(newDisplay)
{
    std::srand(mathbase::initialSeed(static_cast<std::uint32_t>(std::time(nullptr))));
    mWorkspace.setDisplay(display);
    fillWindow();
    registerControls();
}

Vellum::~Vellum() = default;

void Vellum::load(const std::string& fileName)
{
    const std::unique_ptr<const xml::XmlParser> layout = readDocument(*display, fileName);
    if (!layout)
        throw Exception("Could not find the file '%s'.", fileName.c_str());
    if (!isVellum(*layout))
        return;
    for (xml::IteratorConst element = layout->createIterator("workspace"); ++element;)
        if (!loadWorkspace(element))
            return;
}

void Vellum::addControl(Control* control)
{
    mWorkspace.addControl(control, -1);
}

Control* Vellum::findControl(const std::string& name)
{
    return mWorkspace.findControl(name);
}

int Vellum::onMouseUp(const display::MouseButtonEvent& button)
{
    Event event = buttonEvent(Event::MOUSE_UP, button);
    return send(event);
}

int Vellum::onMouseDown(const display::MouseButtonEvent& button)
{
    Event event = buttonEvent(Event::MOUSE_DOWN, button);
    event.doubleClick = button.doubleClick;
    return send(event);
}

int Vellum::onMouseMove(const display::MouseMoveEvent& move)
{
    const int x = static_cast<int>(move.mousePos.x);
    const int y = static_cast<int>(move.mousePos.y);
    if (x == mForwardedX && y == mForwardedY)
        return 0;
    mForwardedX = x;
    mForwardedY = y;

    if (mPanOn)
        mPan = mPan + move.mouseDelta;
    Event event = eventOf(Event::MOUSE_MOVE, move);
    event.mouseDelta = move.mouseDelta;
    send(event);
    return 0;
}

int Vellum::onMouseWheel(const display::MouseMoveEvent& wheel)
{
    Event event = eventOf(Event::MOUSE_WHEEL, wheel);
    event.mouseDeltaWheel = wheel.mouseDeltaWheel;
    return send(event);
}

int Vellum::onKeyDown(const display::KeyEvent& key)
{
    Event event = keyEvent(Event::KEY_DOWN, key);
    return send(event);
}

int Vellum::onKeyUp(const display::KeyEvent& key)
{
    Event event = keyEvent(Event::KEY_UP, key);
    return send(event);
}

int Vellum::onCharDown(const display::CharEvent& character)
{
    Event event = charEvent(Event::CHAR_DOWN, character);
    return send(event);
}

int Vellum::onCharUp(const display::CharEvent& character)
{
    Event event = charEvent(Event::CHAR_UP, character);
    return send(event);
}

void Vellum::onResize(int, int)
{
    fillWindow();
}

void Vellum::onDraw()
{
    mWorkspace.getRender().setupDraw(windowSize(), mPan, 0.0f);
    display::DisplayObsolete::setBlending(true);
    mWorkspace.draw();
}

void Vellum::convertMousePos(Event& event) const
{
    event.mousePos = event.mousePos + mPan;
    event.mousePosWorld = event.mousePos;
}

/** A control may destroy this object in answer to the event. */
int Vellum::send(Event& event)
{
    convertMousePos(event);
    display->setDirty(true);
    return mWorkspace.handleEvent(event);
}

void Vellum::fillWindow()
{
    mWorkspace.setArea(Control::Area(Vector2f(0.0f, 0.0f), windowSize()));
}

Vector2f Vellum::windowSize() const
{
    const display::WindowMode& window = display->getWindowMode();
    return {static_cast<float>(window.width), static_cast<float>(window.height)};
}

/** False when loading is to end. */
bool Vellum::loadWorkspace(xml::IteratorConst& element)
{
    mWorkspace.setDisplay(display);
    const std::string& style = element->getValue("style");
    if (!style.empty() && !loadStyle(style))
        return false;
    mWorkspace.load(element);
    onResize(1, 1); // whose arguments do not count
    return true;
}

/** False when there is no such style document. */
bool Vellum::loadStyle(const std::string& fileName)
{
    std::unique_ptr<xml::XmlParser> document = readDocument(*display, fileName);
    if (!document) {
        std::puts("Vellum::load: Warning: Style not found!");
        return false;
    }
    if (!isVellum(*document))
        return false;
    mStyles.push_back(std::move(document));
    mWorkspace.loadStyle(mStyles.back().get());
    return true;
}

} // namespace zavex::vellum
