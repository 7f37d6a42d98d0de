#pragma once

#include "editor/PerField.h"
#include "model/CGImageProperties.h"

#include <QList>

#include <vector>

namespace tagmoor {

// What a control shows in grey when it has no text.
enum class Placeholder {
    None,             // no placeholder (one photo shown)
    MultipleValues,   // the photos disagree, or some have a value and some not
    EmptyInAllImages, // no photo has a value
};

// The form of several photos: one record that holds a field's value only where every photo
// agrees, and each field's placeholder.
struct MergedSelection {
    CGImageProperties record;
    PerField<Placeholder> placeholders;
};

// Merges the records of `selected`, the first of which is the photo on display. A field keeps
// its value when all photos agree on it; when it is empty in all of them its placeholder is
// "Empty value in all images"; in every other case the field is emptied and shows "Multiple
// Values". The outcome is the same for any order of the photos.
MergedSelection mergeSelection(const QList<const CGImageProperties*>& selected);

// The same merge, built up a run of records at a time: for a caller that spreads a long
// selection over several turns of its event loop instead of waiting for it in one.
class SelectionMerger {
public:
    // `first` is the photo on display; it is kept as a copy.
    explicit SelectionMerger(const CGImageProperties& first);
    // Compares the records of [begin, end) with the first one.
    void add(const CGImageProperties* const* begin, const CGImageProperties* const* end);
    // Takes in what another merger with the same first record has compared.
    void include(const SelectionMerger& other);
    // The merge of the first record and all added so far.
    MergedSelection result() const;

private:
    CGImageProperties m_first;
    std::vector<char> m_firstEmpty;
    std::vector<char> m_same;
};

} // namespace tagmoor
