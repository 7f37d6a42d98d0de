#pragma once

#include <QString>

#include <cstdint>

namespace tagmoor {

// The size text shown wherever a file size appears: decimal steps, and the last three digits
// are dropped before the fraction is shown (1999 bytes read "1.0 KB").
QString fileSizeText(std::uint64_t bytes);

} // namespace tagmoor
