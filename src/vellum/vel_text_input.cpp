#include "vellum/vel_text_input.h"

#include "vellum/vel_area.h"
#include "vellum/vel_workspace.h"

#include "display/dis_font.h"
#include "xml/xml_iteratorconst.h"

#include <algorithm>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr float MARGIN = 4.0f;       // pixels at the left and right of the text
constexpr float CURSOR_WIDTH = 1.0f; // pixels
constexpr float SELECTION_ALPHA = 0.35f;
constexpr char COVER = '*';
constexpr int LAST_CHARACTER = 255; // of Latin-1

EditLine::Kind kindOf(const std::string& word)
{
    if (word == "numeric")
        return EditLine::Kind::NUMERIC;
    return word == "password" ? EditLine::Kind::PASSWORD : EditLine::Kind::TEXT;
}

/** Whether a key types a character, which arrives as an event of its own. */
bool isTyping(display::Key key)
{
    return (key >= display::KEY_SPACE && key < display::KEY_DELETE) ||
           (key >= display::KEY_KP_0 && key <= display::KEY_KP_EQUAL);
}

} // namespace

TextInput::TextInput()
{
    mType = mId = "textinput";
    mCaption.clear();
}

void TextInput::load(xml::IteratorConst& element)
{
    Widget::load(element);
    if (element->hasValue("type"))
        setKind(kindOf(element->getValue("type")));
    if (element->hasValue("text"))
        setCaption(element->getValue("text"));
}

const std::string& TextInput::getCaption() const
{
    return mLine.text();
}

void TextInput::setCaption(const std::string& text)
{
    mLine.setText(text);
}

void TextInput::setKind(EditLine::Kind kind)
{
    mLine.setKind(kind);
}

void TextInput::draw(Area area, Area parent, Area clip)
{
    const Look state = look();
    drawField(area, state == Look::PRESSED ? Look::HOVERED : state);

    const Area inner(area.mMin.x + MARGIN, area.mMin.y + 1.0f, area.mMax.x - MARGIN,
                     area.mMax.y - 1.0f);
    const Area visible = sharedArea(inner, clip);
    if (visible.getWidth() > 0.0f && visible.getHeight() > 0.0f) {
        if (mLine.kind() == EditLine::Kind::PASSWORD)
            mShown.assign(mLine.text().size(), COVER);
        else
            mShown = mLine.text();
        const bool focused = !mInactive && hasKeyboardFocus(*this);
        mScroll = focused ? scrolledToCursor(inner.getWidth()) : 0.0f;
        getRender().setClipArea(visible);
        drawLine(inner, focused);
        getRender().setClipArea(clip);
    }
    Widget::draw(area, parent, clip);
}

void TextInput::press(const Event& event)
{
    Widget::press(event);
    const std::size_t position = positionAt(event.mousePos);
    mWordSelected = event.doubleClick;
    mLine.moveTo(mWordSelected ? mLine.wordBegin(position) : position, event.shift());
    if (mWordSelected)
        mLine.moveTo(mLine.wordEnd(mLine.cursor()), true);
}

void TextInput::drag(const Event& event)
{
    if (!mWordSelected)
        mLine.moveTo(positionAt(event.mousePos), true);
}

bool TextInput::pressKey(const Event& event)
{
    if (moveByKey(event))
        return true;
    if (event.ctrl())
        return pressShortcut(event);
    switch (event.key) {
        case display::KEY_BACKSPACE: report(mLine.eraseBackward()); return true;
        case display::KEY_DEL:
        case display::KEY_DELETE: report(mLine.eraseForward()); return true;
        default: return isTyping(event.key) && !event.leftAlt();
    }
}

bool TextInput::typeCharacter(const Event& event)
{
    if (event.ctrl() && !event.alt())
        return false;
    if (event.keyChar > 0 && event.keyChar <= LAST_CHARACTER)
        report(mLine.insert(std::string(1, static_cast<char>(event.keyChar))));
    return true;
}

bool TextInput::moveByKey(const Event& event)
{
    const bool selecting = event.shift();
    switch (event.key) {
        case display::KEY_HOME: mLine.moveTo(0, selecting); return true;
        case display::KEY_END: mLine.moveTo(mLine.text().size(), selecting); return true;
        case display::KEY_LEFT:
            event.ctrl() ? mLine.moveTo(mLine.wordBegin(mLine.cursor()), selecting)
                         : mLine.stepLeft(selecting);
            return true;
        case display::KEY_RIGHT:
            event.ctrl() ? mLine.moveTo(mLine.wordEnd(mLine.cursor()), selecting)
                         : mLine.stepRight(selecting);
            return true;
        default: return false;
    }
}

bool TextInput::pressShortcut(const Event& event)
{
    Workspace* const clipboard = getWorkspace();
    switch (event.key) {
        case display::KEY_a:
            mLine.moveTo(0, false);
            mLine.moveTo(mLine.text().size(), true);
            return true;
        case display::KEY_c: copy(); return true;
        case display::KEY_x:
            if (copy())
                report(mLine.eraseSelection());
            return true;
        case display::KEY_v:
            if (clipboard)
                report(mLine.insert(clipboard->getCopyString()));
            return true;
        default: return false;
    }
}

/** False when there is nothing to copy or nowhere to. */
bool TextInput::copy()
{
    Workspace* const clipboard = getWorkspace();
    const std::string text = mLine.selected();
    if (!clipboard || text.empty())
        return false;
    clipboard->setCopyString(text);
    return true;
}

/** Reports a change, after which this control may be gone. */
void TextInput::report(bool changed)
{
    if (changed)
        sendAction(ACTION_TEXT_CHANGED);
}

/** Width of what is shown before a position, in pixels. */
float TextInput::widthTo(std::size_t position) const
{
    float width = 0.0f;
    for (std::size_t i = 0; i < position; ++i)
        width += glyphWidth(i);
    return width;
}

/** Width of the glyph that stands for the character at `index`, in pixels. */
float TextInput::glyphWidth(std::size_t index) const
{
    const bool covered = mLine.kind() == EditLine::Kind::PASSWORD;
    return getRender().getTextLength(std::string(1, covered ? COVER : mLine.text()[index]));
}

/** The place between two characters that is nearest to a local point. */
std::size_t TextInput::positionAt(Vector2f point) const
{
    float left = MARGIN - mScroll;
    for (std::size_t i = 0; i < mLine.text().size(); ++i) {
        const float width = glyphWidth(i);
        if (point.x < left + width / 2.0f)
            return i;
        left += width;
    }
    return mLine.text().size();
}

/** The nearest scroll that shows the cursor in `width` pixels and wastes none of them. */
float TextInput::scrolledToCursor(float width)
{
    const float cursor = widthTo(mLine.cursor());
    const float most = std::max(widthTo(mLine.text().size()) + CURSOR_WIDTH - width, 0.0f);
    const float least = std::max(cursor + CURSOR_WIDTH - width, 0.0f);
    return std::min(std::max(std::min(mScroll, most), least), cursor);
}

void TextInput::drawLine(const Area& inner, bool focused)
{
    Render& render = getRender();
    const Area caret(inner.mMin.x - mScroll, inner.mMin.y + 2.0f, 0.0f, inner.mMax.y - 2.0f);
    const auto boxFrom = [&](float from, float to) {
        return Area(caret.mMin.x + from, caret.mMin.y, caret.mMin.x + to, caret.mMax.y);
    };
    style::Color selection = pick(mStyle.mCaption, Look::NORMAL).first;
    selection.w *= SELECTION_ALPHA;
    if (focused && mLine.hasSelection())
        fillBox(render, {selection, selection},
                boxFrom(widthTo(mLine.selectionBegin()), widthTo(mLine.selectionEnd())));

    const ColorPair color = pick(mStyle.mText, look());
    render.setColor(color.first, color.second);
    render.setAlign(display::Font::ALIGN_LEFT);
    render.drawText(mShown, Vector2f(caret.mMin.x, inner.getCenter().y));
    render.setAlign(display::Font::ALIGN_CENTER);
    if (focused) {
        const float cursor = widthTo(mLine.cursor());
        fillBox(render, pick(mStyle.mCaption, Look::NORMAL),
                boxFrom(cursor, cursor + CURSOR_WIDTH));
    }
}

} // namespace zavex::vellum
