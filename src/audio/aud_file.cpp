#include "audio/aud_file.h"

#include "common/zvx_system.h"

#include <algorithm>
#include <utility>

namespace zavex::audio {

File::File(std::shared_ptr<const std::byte> bytes, std::size_t size)
    : mBytes(std::move(bytes)), mSize(size)
{}

void File::seek(std::int64_t position)
{
    mPosition =
        static_cast<std::size_t>(std::clamp<std::int64_t>(position, 0, std::ssize(contents())));
}

std::size_t File::read(std::span<std::byte> target)
{
    const auto rest = contents().subspan(mPosition);
    const std::size_t count = std::min(rest.size(), target.size());
    std::ranges::copy(rest.first(count), target.begin());
    mPosition += count;
    return count;
}

std::shared_ptr<File> File::first(std::size_t size) const
{
    ZVX_REQUIRE(size <= mSize, "size <= mSize");
    return createMemoryFile(mBytes, size);
}

std::shared_ptr<File> createMemoryFile(std::shared_ptr<const std::byte> bytes, std::size_t size)
{
    return std::make_shared<File>(std::move(bytes), size);
}

} // namespace zavex::audio
