#include "xml/xml_bufferreader.h"

#include "common/zvx_system.h"

#include <array>

namespace zavex::xml {

namespace {

constexpr std::array<std::uint8_t, 256> makeClasses()
{
    std::array<std::uint8_t, 256> classes{};
    for (std::size_t byte = 0; byte < classes.size(); ++byte) {
        const bool isWord = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                            (byte >= 'a' && byte <= 'z');
        classes[byte] = isWord ? BufferReader::WORD : BufferReader::OTHER;
    }
    classes[':'] = BufferReader::COLON;
    classes['>'] = BufferReader::CLOSING_ANGLE;
    classes['"'] = BufferReader::DOUBLE_QUOTE;
    classes['\''] = BufferReader::APOSTROPHE;
    classes[' '] = BufferReader::SPACE;
    for (const unsigned char byte : {'\t', '\n', '\r'})
        classes[byte] = BufferReader::SPACE | BufferReader::CONTROL;
    return classes;
}

constexpr std::array<std::uint8_t, 256> CLASSES = makeClasses();

bool isOf(char byte, int classes)
{
    return (CLASSES[static_cast<unsigned char>(byte)] & classes) != 0;
}

} // namespace

int BufferReader::classesIn(std::string_view text)
{
    int classes = 0;
    for (const char byte : text)
        classes |= CLASSES[static_cast<unsigned char>(byte)];
    return classes;
}

void BufferReader::skipWhitespace()
{
    while (!isEof() && isOf(mBuffer[mTell], SPACE))
        advance(mBuffer[mTell]);
}

std::string_view BufferReader::readWord(int classes)
{
    std::size_t end = mTell;
    while (end < mLength && isOf(mBuffer[end], classes))
        ++end;
    const std::string_view word(mBuffer + mTell, end - mTell);
    advanceRun(word.size());
    return word;
}

std::string_view BufferReader::readVerbatim(std::string_view terminator)
{
    const std::string_view rest(mBuffer + mTell, mLength - mTell);
    const std::size_t found = rest.find(terminator);
    const std::string_view content = rest.substr(0, found);
    for (const char byte : content)
        byte == '\r' ? advanceRun(1) : advance(byte);
    if (found == std::string_view::npos)
        throwEof();
    return content;
}

void BufferReader::rememberPosition()
{
    mLineMemory = mLine;
    mCharMemory = mChar;
}

char BufferReader::throwEof()
{
    throw Exception("EOF");
}

void BufferReader::readUpTo(std::string& out, char stop, char otherStop)
{
    const auto isStop = [=](char byte) { return byte == stop || byte == otherStop; };
    while (!isEof() && !isStop(mBuffer[mTell])) {
        std::size_t end = mTell;
        while (end < mLength && !isStop(mBuffer[end]) && !isOf(mBuffer[end], CONTROL))
            ++end;
        out.append(mBuffer + mTell, end - mTell);
        advanceRun(end - mTell);
        if (isEof() || isStop(mBuffer[mTell]))
            return;

        const char control = readChar();
        if (control == '\t')
            out.append(TAB_WIDTH, ' ');
        else if (control == '\n')
            out.push_back(control);
    }
}

void BufferReader::advanceRun(std::size_t length)
{
    mTell += length;
    mChar += static_cast<int>(length);
}

} // namespace zavex::xml
