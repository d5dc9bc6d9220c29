#pragma once

#include "vellum/vel_edit_line.h"
#include "vellum/vel_widget.h"

namespace zavex::vellum {

/**
 * A line of text that the user types. The text is the caption.
 *
 * The mouse puts the cursor, selects by dragging and a word by a double click. Arrows, home and end
 * move, by words with ctrl and selecting with shift; ctrl with A, C, X and V selects all, copies,
 * cuts and pastes through the workspace's clipboard, from which a password keeps away. Longer text
 * scrolls. Characters are those of the font, Latin-1; others are dropped. Reports
 * `ACTION_TEXT_CHANGED` whenever the user changes the text.
 */
class TextInput final : public Widget {
public:
    TextInput();

    Control* clone() override { return new TextInput; }

    /** Reads "text" and "type" ("numeric", "password", anything else plain) where they stand. */
    void load(xml::IteratorConst& element) override;

    const std::string& getCaption() const override;

    /** Drops what the kind of text does not take and puts the cursor at the end. */
    void setCaption(const std::string& text) override;

    void setKind(EditLine::Kind kind);

    /** What is edited, with cursor and selection. */
    const EditLine& getLine() const { return mLine; }

    void draw(Area area, Area parent, Area clip) override;

protected:
    void press(const Event& event) override;
    void drag(const Event& event) override;
    bool pressKey(const Event& event) override;
    bool typeCharacter(const Event& event) override;

private:
    bool pressShortcut(const Event& event);
    bool moveByKey(const Event& event);
    bool copy();
    void report(bool changed);
    float widthTo(std::size_t position) const;
    float glyphWidth(std::size_t index) const;
    std::size_t positionAt(mathbase::Vector2f point) const;
    float scrolledToCursor(float width);
    void drawLine(const Area& inner, bool focused);

    EditLine mLine;
    std::string mShown;         // as drawn, kept for its room
    float mScroll = 0.0f;       // what is out of sight at the left, pixels
    bool mWordSelected = false; // the held press was a double click
};

} // namespace zavex::vellum
