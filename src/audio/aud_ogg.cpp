#include "audio/aud_ogg.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace zavex::audio {

namespace {

using Bytes = std::span<const std::byte>;

// Of a page's header, in bytes from its start.
constexpr std::size_t VERSION_AT = 4;
constexpr std::size_t FLAGS_AT = 5;
constexpr std::size_t POSITION_AT = 6;
constexpr std::size_t SERIAL_AT = 14;
constexpr std::size_t SEQUENCE_AT = 18;
constexpr std::size_t CHECKSUM_AT = 22;
constexpr std::size_t SEGMENT_COUNT_AT = 26;
constexpr std::size_t HEADER_SIZE = 27;

constexpr unsigned CONTINUES = 1; // the page begins within a packet
constexpr unsigned BEGINS = 2;    // the stream
constexpr unsigned ENDS = 4;

constexpr unsigned FULL_SEGMENT = 255; // its packet goes on in the next segment
constexpr std::int64_t NO_POSITION = -1;

// Sample frames of one packet.
constexpr std::int64_t MAX_OPUS_FRAMES = 5760;
constexpr std::int64_t MAX_FLAC_FRAMES = 65535;
constexpr std::size_t VORBIS_BLOCKS_AT = 28; // in the first packet: log2 of both block sizes
constexpr unsigned MAX_VORBIS_BLOCK = 13;    // log2

unsigned byteAt(Bytes bytes, std::size_t at)
{
    return std::to_integer<unsigned>(bytes[at]);
}

std::uint64_t littleEndian(Bytes bytes, std::size_t at, std::size_t size)
{
    std::uint64_t value = 0;
    for (std::size_t i = size; i-- > 0;)
        value = value << 8 | byteAt(bytes, at + i);
    return value;
}

bool startsWith(Bytes bytes, std::string_view text)
{
    return bytes.size() >= text.size() &&
           std::ranges::equal(bytes.first(text.size()), text, {},
                              [](std::byte each) { return static_cast<char>(each); });
}

constexpr std::array<std::uint32_t, 256> makeChecksumTable()
{
    constexpr std::uint32_t polynomial = 0x04c11db7;
    constexpr std::uint32_t highest = 0x80000000;
    std::array<std::uint32_t, 256> table = {};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t rest = i << 24;
        for (int bit = 0; bit < 8; ++bit)
            rest = rest << 1 ^ ((rest & highest) != 0 ? polynomial : 0);
        table[i] = rest;
    }
    return table;
}

/** The page's own, with its field for it taken as 0. */
std::uint32_t checksum(Bytes page)
{
    static constexpr auto table = makeChecksumTable();
    std::uint32_t sum = 0;
    for (std::size_t at = 0; at < page.size(); ++at) {
        const bool isField = at >= CHECKSUM_AT && at < SEGMENT_COUNT_AT;
        sum = sum << 8 ^ table[sum >> 24 ^ (isField ? 0 : byteAt(page, at))];
    }
    return sum;
}

struct Page {
    Bytes bytes; // all of it; empty when it is not whole
    Bytes content;
    unsigned flags = 0;
    std::int64_t position = 0; // sample frames at its end
    std::uint64_t serial = 0;
    std::uint64_t sequence = 0;
    int packets = 0;         // that end on it
    bool leavesOpen = false; // its last packet
};

/** Reads the page that `rest` begins with. */
Page readPage(Bytes rest)
{
    if (!isOgg(rest) || rest.size() < HEADER_SIZE || byteAt(rest, VERSION_AT) != 0)
        return {};
    const std::size_t segmentCount = byteAt(rest, SEGMENT_COUNT_AT);
    std::size_t size = HEADER_SIZE + segmentCount;
    if (size > rest.size())
        return {};

    Page page;
    for (const std::byte each : rest.subspan(HEADER_SIZE, segmentCount)) {
        const auto segment = std::to_integer<unsigned>(each);
        size += segment;
        page.leavesOpen = segment == FULL_SEGMENT;
        page.packets += page.leavesOpen ? 0 : 1;
    }
    if (size > rest.size() || checksum(rest.first(size)) != littleEndian(rest, CHECKSUM_AT, 4))
        return {};
    page.bytes = rest.first(size);
    page.content = page.bytes.subspan(HEADER_SIZE + segmentCount);
    page.flags = byteAt(rest, FLAGS_AT);
    page.position = static_cast<std::int64_t>(littleEndian(rest, POSITION_AT, 8));
    page.serial = littleEndian(rest, SERIAL_AT, 4);
    page.sequence = littleEndian(rest, SEQUENCE_AT, 4);
    return page;
}

/** Sample frames that a packet of the stream holds at most, 0 when it is not known. */
std::int64_t maxPacketFrames(Bytes firstPacket)
{
    if (startsWith(firstPacket, "OpusHead"))
        return MAX_OPUS_FRAMES;
    if (startsWith(firstPacket, "\x7f"
                                "FLAC"))
        return MAX_FLAC_FRAMES;
    if (!startsWith(firstPacket, "\x01vorbis") || firstPacket.size() <= VORBIS_BLOCKS_AT)
        return 0;
    const unsigned longBlock = byteAt(firstPacket, VORBIS_BLOCKS_AT) >> 4;
    return longBlock > MAX_VORBIS_BLOCK ? 0 : std::int64_t{1} << longBlock >> 1;
}

bool follows(const Page& page, const Page& before, std::int64_t position, std::int64_t packetFrames)
{
    const bool continues = (page.flags & CONTINUES) != 0;
    if ((page.flags & BEGINS) != 0 || page.serial != before.serial ||
        page.sequence != before.sequence + 1 || continues != before.leavesOpen)
        return false;
    // Some encoders repeat the position where no packet ends.
    if (page.packets == 0)
        return page.position == NO_POSITION || page.position == position;
    if (page.position < position)
        return false;
    // A stream that was cut out of a longer one begins anywhere.
    return position == 0 || page.position - position <= page.packets * packetFrames;
}

} // namespace

bool isOgg(Bytes file)
{
    return startsWith(file, "OggS");
}

OggExtent measureOgg(Bytes file)
{
    Page page = readPage(file);
    const std::int64_t packetFrames = maxPacketFrames(page.content);
    if ((page.flags & BEGINS) == 0 || packetFrames == 0)
        return {};

    OggExtent extent = {page.bytes.size(), 0};
    std::int64_t position = 0; // sample frames
    while ((page.flags & ENDS) == 0) {
        const Page next = readPage(file.subspan(extent.bytes));
        if (next.bytes.empty() || !follows(next, page, position, packetFrames))
            break;
        extent.bytes += next.bytes.size();
        extent.maxFrames += next.packets * packetFrames;
        position = next.packets > 0 ? next.position : position;
        page = next;
    }
    return extent;
}

} // namespace zavex::audio
