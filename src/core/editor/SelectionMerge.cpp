#include "editor/SelectionMerge.h"

#include "editor/FieldDisplay.h"
#include "model/FormFieldTable.h"

#include <QMutex>
#include <QtConcurrent>

#include <algorithm>
#include <vector>

namespace tagmoor {

namespace {

// For each form field, whether every record of [begin, end) is like `first` in it: empty where
// `first` is empty, agreeing with it where it is not. Each record is visited once, for the
// fields not yet decided, so a long list is walked once rather than once per field.
std::vector<char> alike(const CGImageProperties& first, const std::vector<char>& firstEmpty,
                        const CGImageProperties* const* begin,
                        const CGImageProperties* const* end) {
    const auto& fields = formFields();
    std::vector<char> same(fields.size(), 1);
    std::vector<std::size_t> open(fields.size());
    for (std::size_t i = 0; i < open.size(); ++i)
        open[i] = i;
    for (auto it = begin; it != end && !open.empty(); ++it) {
        const CGImageProperties& record = **it;
        for (std::size_t k = 0; k < open.size();) {
            const std::size_t i = open[k];
            const FormField& field = fields[i];
            const bool like = firstEmpty[i] ? FieldDisplay::isEmpty(record, field)
                                            : FieldDisplay::agree(first, record, field);
            if (like) {
                ++k;
                continue;
            }
            same[i] = 0;
            open[k] = open.back();
            open.pop_back();
        }
    }
    return same;
}

} // namespace

SelectionMerger::SelectionMerger(const CGImageProperties& first)
    : m_first(first), m_firstEmpty(formFields().size()), m_same(formFields().size(), 1) {
    const auto& fields = formFields();
    for (std::size_t i = 0; i < fields.size(); ++i)
        m_firstEmpty[i] = FieldDisplay::isEmpty(m_first, fields[i]);
}

void SelectionMerger::add(const CGImageProperties* const* begin,
                          const CGImageProperties* const* end) {
    const std::vector<char> part = alike(m_first, m_firstEmpty, begin, end);
    for (std::size_t i = 0; i < m_same.size(); ++i)
        m_same[i] = m_same[i] && part[i];
}

void SelectionMerger::include(const SelectionMerger& other) {
    for (std::size_t i = 0; i < m_same.size(); ++i)
        m_same[i] = m_same[i] && other.m_same[i];
}

MergedSelection SelectionMerger::result() const {
    MergedSelection merged;
    merged.record = withKeyGroups(m_first);
    merged.placeholders.fill(Placeholder::MultipleValues);
    const auto& fields = formFields();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const FormField& field = fields[i];
        if (m_firstEmpty[i]) {
            if (m_same[i])
                merged.placeholders[field.field] = Placeholder::EmptyInAllImages;
        } else if (!m_same[i]) {
            field.keyRow().field(merged.record)->clear();
        }
    }
    return merged;
}

MergedSelection mergeSelection(const QList<const CGImageProperties*>& selected) {
    if (selected.isEmpty())
        return {};
    SelectionMerger merger(*selected.first());
    // A long selection is compared in chunks on the pool's threads; the records are only read,
    // and the caller waits.
    constexpr qsizetype kChunk = 8192;
    const CGImageProperties* const* data = selected.constData();
    const qsizetype n = selected.size();
    if (n <= kChunk) {
        merger.add(data + 1, data + n);
        return merger.result();
    }
    QList<qsizetype> starts;
    for (qsizetype s = 1; s < n; s += kChunk)
        starts << s;
    QMutex mutex;
    QtConcurrent::blockingMap(starts, [&](qsizetype s) {
        SelectionMerger part(*selected.first());
        part.add(data + s, data + std::min(n, s + kChunk));
        const QMutexLocker lock(&mutex);
        merger.include(part);
    });
    return merger.result();
}

} // namespace tagmoor
