#include "metadata/WriteHooks.h"

#include "metadata/WriteSeams.h"

#include <atomic>

namespace tagmoor {

namespace {

test::WriteFaultHook& faultHook() {
    static test::WriteFaultHook hook;
    return hook;
}

std::atomic<bool> wholeFiles{false};

} // namespace

int writeFaultAt(SafeFileReplace::Step step) {
    const auto& hook = faultHook();
    return hook ? hook(step) : 0;
}

bool editWholeFilesOnly() {
    return wholeFiles.load();
}

void test::setWriteFaultHook(WriteFaultHook hook) {
    faultHook() = std::move(hook);
}

void test::setWholeFilesOnly(bool whole) {
    wholeFiles = whole;
}

} // namespace tagmoor
