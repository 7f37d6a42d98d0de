#pragma once

#include "extras/ExtraEdits.h"
#include "extras/KeywordLists.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <span>
#include <vector>

namespace tagmoor {

// Which of a photo's values beyond the form's fields came from its sidecar.
struct ExtraSources {
    bool keywords = false;
    bool rating = false;
    bool label = false;
    PerExtraText<bool> texts{};
    bool persons = false;

    bool any() const;
    bool operator==(const ExtraSources&) const = default;
};

// What one photo holds of the values beyond the form's fields.
struct ExtraValues {
    KeywordLists keywords;
    std::optional<int> rating;
    std::optional<QString> label;
    PerExtraText<std::optional<QString>> texts;
    QStringList persons;
    // The XMP sidecar whose values were laid over the photo's own (empty: none was), and the
    // values that came from it.
    QString sidecarPath;
    ExtraSources fromSidecar;

    // The keywords as a person would list them: every path of either path list (with "|"),
    // then the plain keywords of either flat list that are not the leaf of one of those
    // paths; each once, in the order found.
    QStringList shownKeywords() const;

    bool operator==(const ExtraValues&) const = default;
};

// A keyword of a set of photos and on how many of them it is.
struct KeywordCount {
    QString keyword;
    int photos = 0;

    bool operator==(const KeywordCount&) const = default;
};

// The shown keywords of all `photos`, each with the number of photos that have it, sorted by
// keyword (case-insensitive, then exact).
std::vector<KeywordCount> keywordCounts(std::span<const ExtraValues> photos);

// The texts a keyword field offers while typing: every keyword of the counts, and each level
// path above a path's leaf ("Places", "Places|Portugal"), once each, in the counts' order.
QStringList keywordCompletions(const std::vector<KeywordCount>& counts);

} // namespace tagmoor
