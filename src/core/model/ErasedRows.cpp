#include "model/ErasedRows.h"

#include <algorithm>

namespace tagmoor {

namespace {

// The table's own row, so that rows compare by address whichever copy named them.
const KeyRow& tableRow(const KeyRow& row) {
    switch (row.block) {
    case KeyBlock::Exif:
        return exifKeyRows()[std::size_t(row.row)];
    case KeyBlock::Iptc:
        return iptcKeyRows()[std::size_t(row.row)];
    case KeyBlock::Xmp:
        break;
    }
    return xmpKeyRows()[std::size_t(row.row)];
}

} // namespace

ErasedRows ErasedRows::ofKeys(const QStringList& keys) {
    ErasedRows erased;
    for (const QString& key : keys) {
        if (const KeyRow* row = findKeyRow(key))
            erased.add(*row);
    }
    return erased;
}

void ErasedRows::add(const KeyRow& row) {
    if (!contains(row))
        m_rows[std::size_t(row.block)].push_back(&tableRow(row));
}

bool ErasedRows::contains(const KeyRow& row) const {
    const auto& list = rows(row.block);
    return std::find(list.begin(), list.end(), &tableRow(row)) != list.end();
}

QStringList ErasedRows::keys(KeyBlock block) const {
    QStringList texts;
    for (const KeyRow* row : rows(block))
        texts << QString::fromLatin1(row->key);
    return texts;
}

} // namespace tagmoor
