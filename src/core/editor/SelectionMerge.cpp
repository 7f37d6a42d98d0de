#include "editor/SelectionMerge.h"

#include "editor/FieldDisplay.h"

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

MergedSelection mergeSelection(const QList<const CGImageProperties*>& selected) {
    MergedSelection merged;
    if (selected.isEmpty())
        return merged;
    merged.record = withKeyGroups(*selected.first());
    merged.placeholders.fill(Placeholder::MultipleValues);
    const CGImageProperties& first = *selected.first();
    const auto& fields = formFields();
    std::vector<char> firstEmpty(fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i)
        firstEmpty[i] = FieldDisplay::isEmpty(first, fields[i]);

    // A long selection is compared in chunks on the pool's threads; the records are only read,
    // and the caller waits.
    constexpr qsizetype kChunk = 8192;
    const CGImageProperties* const* data = selected.constData();
    const qsizetype n = selected.size();
    std::vector<char> same;
    if (n <= kChunk) {
        same = alike(first, firstEmpty, data + 1, data + n);
    } else {
        QList<qsizetype> starts;
        for (qsizetype s = 1; s < n; s += kChunk)
            starts << s;
        same = QtConcurrent::blockingMappedReduced<std::vector<char>>(
            starts,
            [&](qsizetype s) {
                return alike(first, firstEmpty, data + s, data + std::min(n, s + kChunk));
            },
            [](std::vector<char>& all, const std::vector<char>& part) {
                if (all.empty())
                    all = part;
                else
                    for (std::size_t i = 0; i < all.size(); ++i)
                        all[i] = all[i] && part[i];
            });
    }

    for (std::size_t i = 0; i < fields.size(); ++i) {
        const FormField& field = fields[i];
        if (firstEmpty[i]) {
            if (same[i])
                merged.placeholders[std::size_t(field.position)] = Placeholder::EmptyInAllImages;
        } else if (!same[i]) {
            field.keyRow().field(merged.record)->clear();
        }
    }
    return merged;
}

} // namespace tagmoor
