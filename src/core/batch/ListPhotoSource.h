#pragma once

#include "batch/PhotoSource.h"

#include <QList>

#include <utility>

namespace tagmoor {

// A run over records already in memory, such as a copy of the working list.
class ListPhotoSource : public PhotoSource {
public:
    explicit ListPhotoSource(QList<CGImageProperties> records) : m_records(std::move(records)) {}
    int count() const override { return int(m_records.size()); }
    bool isSelected(int index) const override { return m_records.at(index).isSelected; }
    CGImageProperties record(int index) const override { return m_records.at(index); }
    QString pathOf(int index) const override { return m_records.at(index).path(); }

private:
    QList<CGImageProperties> m_records;
};

} // namespace tagmoor
