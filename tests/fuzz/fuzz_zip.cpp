// An archive gives a file or none, and each time the same.

#include "am/am_archivezip.h"
#include "fuzz/fuzz_target.h"
#include "support/temporary_folder.h"

#include <algorithm>

namespace zavex::fuzz {

void zip(Bytes input)
{
    static const test::TemporaryFolder folder;
    folder.write("it.zip", textOf(input));
    am::ArchiveZIP archive(folder.path("it.zip"));
    for (const char* name : {"a", "b/c", ""}) {
        const am::File file = archive.read(name);
        const am::File again = archive.read(name);
        expect(file.isNull() == again.isNull(), "a file is there once");
        expect(file.isNull() || std::equal(file->data, file->data + file->length, again->data,
                                           again->data + again->length),
               "a file differs the second time");
    }
}

} // namespace zavex::fuzz
