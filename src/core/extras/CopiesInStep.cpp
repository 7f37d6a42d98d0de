#include "extras/CopiesInStep.h"

#include <atomic>

namespace tagmoor {

namespace {

std::atomic<bool>& inStepFlag() {
    static std::atomic<bool> flag{false};
    return flag;
}

} // namespace

bool copiesInStep() {
    return inStepFlag().load(std::memory_order_relaxed);
}

void setCopiesInStep(bool inStep) {
    inStepFlag().store(inStep, std::memory_order_relaxed);
}

} // namespace tagmoor
