#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zavex::vellum {

/**
 * One line of Latin-1 text that is being edited: the text, a cursor between its characters and a
 * selection from an anchor to the cursor.
 *
 * Positions are in 0..length; those beyond are cut. At most 4096 characters are kept; control
 * characters never are.
 */
class EditLine {
public:
    enum class Kind {
        TEXT,
        NUMERIC,  // what can begin a decimal number: a minus, digits, a point
        PASSWORD, // as text, but nothing can be copied out of it
    };

    /** Characters of the present text that the kind does not take are dropped. */
    void setKind(Kind kind);
    Kind kind() const { return mKind; }

    /** Takes what the kind takes of `text` and puts the cursor at the end. */
    void setText(std::string_view text);
    const std::string& text() const { return mText; }

    std::size_t cursor() const { return mCursor; }
    std::size_t selectionBegin() const;
    std::size_t selectionEnd() const;
    bool hasSelection() const { return mCursor != mAnchor; }

    /** What may be copied of the selection. */
    std::string selected() const;

    /** @param selecting  Whether the selection is stretched to the cursor instead of given up. */
    void moveTo(std::size_t position, bool selecting);

    /** One character to the left or right; without `selecting` a selection is left at that end. */
    void stepLeft(bool selecting);
    void stepRight(bool selecting);

    /** Begin of the word that a position is in or behind, end of the one it is in or before. */
    std::size_t wordBegin(std::size_t position) const;
    std::size_t wordEnd(std::size_t position) const;

    // What changes the text says whether it did.

    /** Puts what the kind takes of `text` in the place of the selection; nothing if that is none.
     */
    bool insert(std::string_view text);

    bool eraseSelection();

    /** Erases the selection, else the character before the cursor or behind it. */
    bool eraseBackward();
    bool eraseForward();

private:
    bool takes(char character) const;
    bool put(char character);

    Kind mKind = Kind::TEXT;
    std::string mText;
    std::size_t mCursor = 0;
    std::size_t mAnchor = 0;
};

} // namespace zavex::vellum
