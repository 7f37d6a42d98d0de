#pragma once

#include <cstddef>

namespace tagmoor::test {

// How many times this process parsed or wrote XMP on a thread without the toolkit lock.
std::size_t xmpParsesWithoutLock();

} // namespace tagmoor::test
