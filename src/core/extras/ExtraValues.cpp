#include "extras/ExtraValues.h"

#include <QHash>

#include <algorithm>

namespace tagmoor {

bool ExtraSources::any() const {
    return keywords || rating || label || persons ||
           std::find(texts.begin(), texts.end(), true) != texts.end();
}

QStringList ExtraValues::shownKeywords() const {
    QStringList shown;
    QStringList leaves;
    const auto addPath = [&](const QString& path) {
        if (!shown.contains(path)) {
            shown.append(path);
            leaves.append(keywordLeaf(path));
        }
    };
    for (const QString& path : keywords.hierarchical)
        addPath(path);
    for (const QString& entry : keywords.tagsList)
        addPath(pathOfTagsListEntry(entry));
    for (const QStringList* flat : {&keywords.iptc, &keywords.subject}) {
        for (const QString& keyword : *flat)
            if (!keyword.isEmpty() && !leaves.contains(keyword) && !shown.contains(keyword))
                shown.append(keyword);
    }
    return shown;
}

std::vector<KeywordCount> keywordCounts(std::span<const ExtraValues> photos) {
    QHash<QString, int> counts;
    for (const ExtraValues& photo : photos)
        for (const QString& keyword : photo.shownKeywords())
            ++counts[keyword];
    std::vector<KeywordCount> result;
    result.reserve(std::size_t(counts.size()));
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        result.push_back({it.key(), it.value()});
    std::sort(result.begin(), result.end(), [](const KeywordCount& a, const KeywordCount& b) {
        const int folded = a.keyword.compare(b.keyword, Qt::CaseInsensitive);
        return folded != 0 ? folded < 0 : a.keyword < b.keyword;
    });
    return result;
}

QStringList keywordCompletions(const std::vector<KeywordCount>& counts) {
    QStringList completions;
    for (const KeywordCount& count : counts) {
        const QStringList levels = count.keyword.split(QLatin1Char('|'));
        for (qsizetype depth = 1; depth <= levels.size(); ++depth) {
            const QString path = levels.first(depth).join(QLatin1Char('|'));
            if (!completions.contains(path))
                completions.append(path);
        }
    }
    return completions;
}

} // namespace tagmoor
