// Feeds each input to the record loader under the file name its content calls for.
#include "FuzzDriver.h"
#include "FuzzSetup.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    tagmoor::fuzz::setUpProcess(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tagmoor::fuzz;
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const QString path = placeInput(bytes, scratchDir());
    if (!path.isEmpty())
        loadFile(path);
    clearScratch();
    return 0;
}
