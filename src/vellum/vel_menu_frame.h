#pragma once

#include "vellum/vel_context.h"
#include "vellum/vel_frame.h"

namespace zavex::vellum {

/**
 * The content of a `Menu`: rows that fill it and draw it in its colours. Tells the menu around it
 * of choices.
 */
class MenuFrame : public Frame {
public:
    MenuFrame();

    Control* clone() override { return new MenuFrame; }

    /** As the base; the rows and their submenus take the colours over. */
    void loadStyle(xml::IteratorConst& element) override;

    void sendContextAction(Context* context, const std::string& action) override;

    /** Draws the rows, which cover everything. */
    void draw(Area area, Area parent, Area clip) override;

    /** The rows, owned by this frame as its first child. */
    Context& getRows() { return *mRows; }

protected:
    /** Passes the choice on to the parent. */
    void choose(const std::string& action) override;

private:
    Context* mRows; // owned, as a child
};

} // namespace zavex::vellum
