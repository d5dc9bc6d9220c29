#pragma once

#include "vellum/vel_workspace.h"

#include "display/dis_listener.h"
#include "mathbase/mb_vector2.h"

#include <memory>
#include <string>
#include <vector>

namespace zavex::xml {
class IteratorConst;
class XmlParser;
} // namespace zavex::xml

namespace zavex::vellum {

/**
 * A GUI on a display: turns the display's input into events for a tree of controls, draws the tree
 * in every frame and keeps it as large as the window.
 *
 * Controls come from a layout file or are added one by one. Owns the workspace, everything in it
 * and the style documents. Must be destroyed before its display is.
 */
class Vellum : public display::Listener {
public:
    /**
     * Becomes the last listener of `display`, which must not be null, makes all control types known
     * to the factory and seeds the C random generator: with `mathbase::initialSeed`, which is the
     * current time here where the environment asks for nothing.
     */
    explicit Vellum(display::DisplayGL* display);
    Vellum(const Vellum&) = delete;
    Vellum& operator=(const Vellum&) = delete;
    ~Vellum() override;

    /**
     * Adds what a layout file describes: each "workspace" element below its root element is loaded
     * into the workspace, after the style file that the element names. Nothing happens where the
     * root element is not "vellum". Loading ends where a style file is missing, with a line on
     * standard output, or where its root element is not "vellum".
     *
     * Throws Exception when the layout or the font sheet is missing, or a document is malformed.
     */
    void load(const std::string& fileName);

    /** Adds a control at the top of the workspace, which owns it from here on. */
    void addControl(Control* control);

    /** The first control called `name`, the workspace included; or null. */
    Control* findControl(const std::string& name);

    int onMouseUp(const display::MouseButtonEvent& event) override;
    int onMouseDown(const display::MouseButtonEvent& event) override;

    /** Moves within one pixel are dropped. Always 0. */
    int onMouseMove(const display::MouseMoveEvent& event) override;
    int onMouseWheel(const display::MouseMoveEvent& event) override;
    int onKeyDown(const display::KeyEvent& event) override;
    int onKeyUp(const display::KeyEvent& event) override;
    int onCharDown(const display::CharEvent& event) override;
    int onCharUp(const display::CharEvent& event) override;

    /** The workspace takes the size that the window has, whatever the arguments are. */
    void onResize(int width, int height) override;
    void onDraw() override;

    /** Moves the event from window to workspace coordinates and records the result. */
    void convertMousePos(Event& event) const;

protected:
    bool mPanOn = false;                 // moving the pointer moves the view
    mathbase::Vector2f mPan{0.0f, 0.0f}; // pixels added to the pointer's position

private:
    int send(Event& event);
    void fillWindow();
    mathbase::Vector2f windowSize() const;
    bool loadWorkspace(xml::IteratorConst& element);
    bool loadStyle(const std::string& fileName);

    std::vector<std::unique_ptr<xml::XmlParser>> mStyles; // outlive the workspace
    Workspace mWorkspace;
    int mForwardedX = 0; // where the pointer was last seen, in whole pixels of the window
    int mForwardedY = 0;
};

} // namespace zavex::vellum
