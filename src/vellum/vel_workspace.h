#pragma once

#include "vellum/vel_control.h"
#include "vellum/vel_render.h"

#include <optional>
#include <string>

namespace zavex::xml {
class XmlParser;
}

namespace zavex::vellum {

/**
 * The root of a control tree: what to draw with and where, the style document, the clipboard of the
 * text controls, and at most one open pop-up menu above everything else.
 *
 * A hidden workspace neither draws nor handles events. One that is a child of another control
 * leaves display, drawing and menus to the root. Owns its children and nothing else: display, style
 * document and menu belong to others.
 */
class Workspace : public Control {
public:
    Workspace();

    Control* clone() override { return new Workspace; }

    /**
     * As the base; then loads the font sheet named by the attribute "font", "fonthelvete2.png"
     * without one. Throws Exception when there is no such sheet.
     */
    void load(xml::IteratorConst& element) override;

    using Control::loadStyle;

    /** @param document  Where `getStyle` looks, must outlive this control; null: there are none. */
    void loadStyle(xml::XmlParser* document);
    xml::IteratorConst getStyle(const std::string& name) const override;

    /** @param display  What to draw on, must outlive this control; or null. */
    void setDisplay(display::DisplayGL* display);
    display::DisplayGL* getDisplay() const override;
    Render& getRender() override;

    /**
     * Gives the event to the open menu, if there is one, before everything else, and closes the
     * menu at the second release of the left button after its opening.
     *
     * Nothing but the menu sees an event as long as a menu is open, and nothing but the menu sees a
     * press that closes it, unless the owner of the menu lets events through.
     */
    int handleEvent(Event& event) override;

    /** Opens `context`, in the place of any that is open (`Context::open`). */
    void setContext(Context* context) override;
    void resetContext() override;

    using Control::draw;

    /** Also closes the open menu. */
    void letGo() override;
    Workspace* getWorkspace() override;

    /** Draws the tree, then the open menu. `Render::setupDraw` must have been called. */
    void draw();

    void setCopyString(const std::string& text);
    const std::string& getCopyString() const;

protected:
    bool drawsAllChildren() const override { return true; }

private:
    std::optional<int> passToMenu(Event& event);
    void drawMenu();

    display::DisplayGL* mDisplay = nullptr; // not owned
    Render mRender;
    Context* mContext = nullptr; // the open menu; not owned
    bool mContextFirst = true;   // no button was released since the menu was opened
    std::string mCopyString;
    xml::XmlParser* mStyleTag = nullptr; // not owned
};

} // namespace zavex::vellum
