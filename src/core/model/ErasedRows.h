#pragma once

#include "model/KeyTable.h"

#include <QStringList>

#include <array>
#include <vector>

namespace tagmoor {

// The rows of the key lists whose tags an edit erases. Each block keeps its rows in the order
// they were added, and holds a row once.
class ErasedRows {
public:
    ErasedRows() = default;
    // The rows of these key texts; a text that no row has is left out.
    static ErasedRows ofKeys(const QStringList& keys);

    void add(const KeyRow& row);
    bool contains(const KeyRow& row) const;
    bool isEmpty(KeyBlock block) const { return rows(block).empty(); }
    const std::vector<const KeyRow*>& rows(KeyBlock block) const {
        return m_rows[std::size_t(block)];
    }
    // The key texts of a block's rows, in their order.
    QStringList keys(KeyBlock block) const;

    bool operator==(const ErasedRows&) const = default;

private:
    std::array<std::vector<const KeyRow*>, 3> m_rows;
};

} // namespace tagmoor
