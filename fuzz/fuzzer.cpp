// The main program of every fuzz entry; the build names the entry.

#include "fuzz/entries.h"
#include "support/temporaryfolder.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const TemporaryFolder folder;
    readBytes(CRENARA_FUZZ_ENTRY, folder.path().string(),
              std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
