#include "extras/KeywordLists.h"

namespace tagmoor {

namespace {

constexpr QChar kPathSeparator = QLatin1Char('|');
constexpr QChar kTagsListSeparator = QLatin1Char('/');

void appendMissing(QStringList& list, const QString& item) {
    if (!list.contains(item))
        list.append(item);
}

// Whether a path of either list ends in `leaf`.
bool leafStays(const KeywordLists& lists, const QString& leaf) {
    for (const QString& path : lists.hierarchical)
        if (isKeywordPath(path) && keywordLeaf(path) == leaf)
            return true;
    for (const QString& entry : lists.tagsList) {
        const QString path = pathOfTagsListEntry(entry);
        if (isKeywordPath(path) && keywordLeaf(path) == leaf)
            return true;
    }
    return false;
}

void removeKeyword(KeywordLists& lists, const QString& keyword) {
    if (!isKeywordPath(keyword)) {
        lists.iptc.removeAll(keyword);
        lists.subject.removeAll(keyword);
        return;
    }
    lists.hierarchical.removeAll(keyword);
    lists.tagsList.removeAll(tagsListPath(keyword));
    const QString leaf = keywordLeaf(keyword);
    if (!leafStays(lists, leaf)) {
        lists.iptc.removeAll(leaf);
        lists.subject.removeAll(leaf);
    }
}

void addKeyword(KeywordLists& lists, const QString& keyword) {
    if (isKeywordPath(keyword)) {
        appendMissing(lists.hierarchical, keyword);
        appendMissing(lists.tagsList, tagsListPath(keyword));
    }
    const QString leaf = keywordLeaf(keyword);
    appendMissing(lists.iptc, leaf);
    appendMissing(lists.subject, leaf);
}

} // namespace

bool isKeywordPath(const QString& keyword) {
    return keyword.contains(kPathSeparator);
}

QString normalisedKeyword(const QString& keyword) {
    QStringList levels = keyword.split(kPathSeparator);
    for (QString& level : levels)
        level = level.trimmed();
    return levels.join(kPathSeparator);
}

QString keywordLeaf(const QString& keyword) {
    return keyword.section(kPathSeparator, -1);
}

QString tagsListPath(const QString& path) {
    return QString(path).replace(kPathSeparator, kTagsListSeparator);
}

QString pathOfTagsListEntry(const QString& entry) {
    return QString(entry).replace(kTagsListSeparator, kPathSeparator);
}

KeywordLists withKeywordEdits(KeywordLists lists, const QStringList& add,
                              const QStringList& remove) {
    for (const QString& keyword : remove)
        removeKeyword(lists, normalisedKeyword(keyword));
    for (const QString& keyword : add)
        addKeyword(lists, normalisedKeyword(keyword));
    return lists;
}

} // namespace tagmoor
