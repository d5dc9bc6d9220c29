#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace zavex::audio {

/**
 * A file whose bytes are all in memory, with one reading position.
 *
 * Shares the bytes with whoever else holds them and never copies them. One `SampleSource` reads a
 * file at a time.
 */
class File {
public:
    /** @param bytes  First of `size` bytes, kept alive by this file; may be null when `size` is 0.
     */
    File(std::shared_ptr<const std::byte> bytes, std::size_t size);

    /** Moves the reading position to `position` bytes from the start, limited to 0..size. */
    void seek(std::int64_t position);

    /** Copies the next bytes to `target` and moves on; returns how many there were, 0 at the end.
     */
    std::size_t read(std::span<std::byte> target);

    /** The reading position, in bytes from the start. */
    std::size_t tell() const { return mPosition; }

    std::size_t size() const { return mSize; }

    std::span<const std::byte> contents() const { return {mBytes.get(), mSize}; }

    /** Another file over the first `size` bytes of this one, which must have as many. */
    std::shared_ptr<File> first(std::size_t size) const;

private:
    std::shared_ptr<const std::byte> mBytes;
    std::size_t mSize = 0;     // bytes
    std::size_t mPosition = 0; // bytes
};

/** A file over the caller's bytes; `bytes` may share its ownership with the object holding them. */
std::shared_ptr<File> createMemoryFile(std::shared_ptr<const std::byte> bytes, std::size_t size);

} // namespace zavex::audio
