#pragma once

#include <QByteArray>

namespace tagmoor {

// Resizes `bytes` to `size` for a read from a file into it, keeping what it holds, so that its
// data starts a memory page. The kernel's copy from the page cache into a buffer that starts a
// few bytes into a page, as a new QByteArray does behind its header, ran at a fifth of its
// speed on the processors we measured (its stores alias the loads of the page they copy), and
// a photo's bytes go through such copies on every read and every batch.
void resizeForRead(QByteArray& bytes, qsizetype size);

} // namespace tagmoor
