#include "vellum/vel_edit_line.h"

#include <algorithm>
#include <utility>

namespace zavex::vellum {

namespace {

constexpr std::size_t MAX_LENGTH = 4096; // characters

bool isPrintable(char character)
{
    const auto code = static_cast<unsigned char>(character);
    return (code >= 32 && code < 127) || code >= 160;
}

/** Whether digits could be put behind `text` to make a decimal number of it. */
bool beginsNumber(std::string_view text)
{
    if (text.starts_with('-'))
        text.remove_prefix(1);
    return text.find_first_not_of("0123456789.") == std::string_view::npos &&
           std::ranges::count(text, '.') <= 1;
}

} // namespace

void EditLine::setKind(Kind kind)
{
    mKind = kind;
    setText(std::string(mText));
}

void EditLine::setText(std::string_view text)
{
    mText.clear();
    mCursor = mAnchor = 0;
    insert(text);
}

std::size_t EditLine::selectionBegin() const
{
    return std::min(mCursor, mAnchor);
}

std::size_t EditLine::selectionEnd() const
{
    return std::max(mCursor, mAnchor);
}

std::string EditLine::selected() const
{
    if (mKind == Kind::PASSWORD)
        return {};
    return mText.substr(selectionBegin(), selectionEnd() - selectionBegin());
}

void EditLine::moveTo(std::size_t position, bool selecting)
{
    mCursor = std::min(position, mText.size());
    if (!selecting)
        mAnchor = mCursor;
}

void EditLine::stepLeft(bool selecting)
{
    if (hasSelection() && !selecting)
        moveTo(selectionBegin(), false);
    else
        moveTo(mCursor - std::min<std::size_t>(mCursor, 1), selecting);
}

void EditLine::stepRight(bool selecting)
{
    if (hasSelection() && !selecting)
        moveTo(selectionEnd(), false);
    else
        moveTo(mCursor + 1, selecting);
}

std::size_t EditLine::wordBegin(std::size_t position) const
{
    position = std::min(position, mText.size());
    while (position > 0 && mText[position - 1] == ' ')
        --position;
    while (position > 0 && mText[position - 1] != ' ')
        --position;
    return position;
}

std::size_t EditLine::wordEnd(std::size_t position) const
{
    position = std::min(mText.find_first_not_of(' ', position), mText.size());
    return std::min(mText.find(' ', position), mText.size());
}

bool EditLine::insert(std::string_view text)
{
    EditLine edited = *this;
    edited.eraseSelection();
    bool any = false;
    for (const char character : text)
        any |= edited.put(character);
    if (!any)
        return false;
    const bool changed = edited.mText != mText;
    *this = std::move(edited);
    return changed;
}

bool EditLine::eraseSelection()
{
    const std::size_t begin = selectionBegin();
    const std::size_t length = selectionEnd() - begin;
    mText.erase(begin, length);
    moveTo(begin, false);
    return length > 0;
}

bool EditLine::eraseBackward()
{
    if (!hasSelection())
        stepLeft(true);
    return eraseSelection();
}

bool EditLine::eraseForward()
{
    if (!hasSelection())
        stepRight(true);
    return eraseSelection();
}

/** Whether a character may stand at the cursor. */
bool EditLine::takes(char character) const
{
    if (!isPrintable(character) || mText.size() >= MAX_LENGTH)
        return false;
    if (mKind != Kind::NUMERIC)
        return true;
    std::string longer = mText;
    longer.insert(mCursor, 1, character);
    return beginsNumber(longer);
}

bool EditLine::put(char character)
{
    if (!takes(character))
        return false;
    mText.insert(mCursor, 1, character);
    moveTo(mCursor + 1, false);
    return true;
}

} // namespace zavex::vellum
