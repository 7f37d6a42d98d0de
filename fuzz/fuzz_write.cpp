// Runs the write path of one batch photo (merge, write, erase, strip, read back) on each input.
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
        writeFile(path, cleanChoice(bytes));
    clearScratch();
    return 0;
}
