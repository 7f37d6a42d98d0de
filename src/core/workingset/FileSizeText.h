#pragma once

#include <QString>

#include <cstdint>

namespace tagmoor {

// The size text shown wherever a file size appears, in decimal steps (1 KB is 1000 bytes).
// In the standard form it is the true value rounded to one decimal, in the largest unit that
// keeps it below 1000 (912,863 bytes read "912.9 KB", 999,999 read "1.0 MB"). In the described
// form the last three digits are dropped before the fraction is shown (1999 bytes read
// "1.0 KB").
QString fileSizeText(std::uint64_t bytes);

} // namespace tagmoor
