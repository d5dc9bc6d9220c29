#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zavex::xml {

/**
 * A read cursor over a byte buffer that it does not own; internal to the parser.
 *
 * Counts lines and columns from 1: a newline starts a line, a carriage return leaves the column, a
 * tab adds 4, every other byte 1. Works in runs of like bytes, so that the position is kept at the
 * cost of one table look-up a byte.
 */
class BufferReader {
public:
    /** Kinds of bytes, combined as bits. */
    enum Class : std::uint8_t {
        WORD = 1,          // ASCII letters and digits
        COLON = 2,         // ':'
        CLOSING_ANGLE = 4, // '>'
        SPACE = 8,         // space, tab, newline, carriage return
        CONTROL = 16,      // tab, newline, carriage return
        DOUBLE_QUOTE = 32, // '"'
        APOSTROPHE = 64,   // '\''
        OTHER = 128,       // all that is none of these
    };

    BufferReader(const char* buffer, std::size_t length) : mBuffer(buffer), mLength(length) {}

    /** The kinds of bytes that occur in `text`; 0 when it is empty. */
    static int classesIn(std::string_view text);

    /** Consumes one byte. Throws "EOF" at the end. */
    char readChar();

    /** Consumes one byte. Throws "EOF" at the end. */
    void skipChar() { readChar(); }

    /** Consumes spaces, tabs, newlines and carriage returns; the end of the buffer is no fault. */
    void skipWhitespace();

    /**
     * Consumes a run, possibly empty, of bytes that are of one of `classes` (`WORD`, `COLON`,
     * `CLOSING_ANGLE`).
     *
     * @return  The run, a part of the buffer.
     */
    std::string_view readWord(int classes = WORD);

    /**
     * Consumes bytes up to `stop` or the end of the buffer and appends them to `out`, carriage
     * returns dropped and tabs as four spaces. `stop` itself stays.
     */
    void readText(std::string& out, char stop) { readUpTo(out, stop, stop); }

    /** As `readText`, but stops before a newline too. */
    void readLine(std::string& out, char stop) { readUpTo(out, stop, '\n'); }

    /**
     * Consumes bytes up to `terminator`, which stays. A carriage return counts as a column here.
     *
     * @return  The bytes as they are, a part of the buffer. When there is no `terminator`, consumes
     *          the rest of the buffer and throws "EOF".
     */
    std::string_view readVerbatim(std::string_view terminator);

    /** Keeps the present line and column for `getLineMemory` and `getCharMemory`. */
    void rememberPosition();

    /** The byte `offset` bytes ahead. Throws "EOF" when it lies at or past the end. */
    char peekChar(std::size_t offset = 0) const
    {
        return isEof(offset) ? throwEof() : mBuffer[mTell + offset];
    }

    bool isEof(std::size_t offset = 0) const { return offset >= mLength - mTell; }

    int getLine() const { return mLine; }
    int getChar() const { return mChar; }

    /** -1 until the first `rememberPosition`. */
    int getLineMemory() const { return mLineMemory; }
    int getCharMemory() const { return mCharMemory; }

private:
    static constexpr int TAB_WIDTH = 4; // columns, and the spaces that stand for a tab in text

    [[noreturn]] static char throwEof();

    void readUpTo(std::string& out, char stop, char otherStop);
    void advance(char byte);
    void advanceRun(std::size_t length);

    const char* mBuffer;   // not owned
    std::size_t mLength;   // bytes
    std::size_t mTell = 0; // bytes consumed
    int mLine = 1;
    int mChar = 1;
    int mLineMemory = -1;
    int mCharMemory = -1;
};

// Here, because the parser calls them for nearly every byte.

inline char BufferReader::readChar()
{
    const char byte = peekChar();
    advance(byte);
    return byte;
}

inline void BufferReader::advance(char byte)
{
    ++mTell;
    if (byte == '\n') {
        ++mLine;
        mChar = 1;
        return;
    }
    if (byte != '\r')
        mChar += byte == '\t' ? TAB_WIDTH : 1;
}

} // namespace zavex::xml
