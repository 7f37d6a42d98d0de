#pragma once

#include <QString>
#include <QStringList>

namespace tagmoor {

// A photo's keywords in the four places the photo programs keep them. A keyword path
// ("Places|Portugal|Lisbon") stands in the hierarchical subject with "|" and in the tag list
// with "/" ("Places/Portugal/Lisbon"); its leaf ("Lisbon") in the two flat lists.
struct KeywordLists {
    QStringList iptc;         // Iptc.Application2.Keywords
    QStringList subject;      // Xmp.dc.subject
    QStringList hierarchical; // Xmp.lr.hierarchicalSubject
    QStringList tagsList;     // Xmp.digiKam.TagsList

    bool operator==(const KeywordLists&) const = default;
};

// Whether a keyword is a path of levels.
bool isKeywordPath(const QString& keyword);
// The keyword with blanks around each level trimmed ("Places | Lisbon" is "Places|Lisbon").
QString normalisedKeyword(const QString& keyword);
// The last level of a path; a keyword without levels is its own leaf.
QString keywordLeaf(const QString& keyword);
// A path as the tag list writes it ("/" between levels), and back.
QString tagsListPath(const QString& path);
QString pathOfTagsListEntry(const QString& entry);

// The lists after removing `remove` and then adding `add`, every other keyword kept in its
// place. A plain keyword is added to and removed from the flat lists. A path is added to
// both path lists and its leaf to the flat lists; removing it takes it out of both path lists,
// and its leaf out of the flat lists unless a path that stays ends in the same leaf.
KeywordLists withKeywordEdits(KeywordLists lists, const QStringList& add,
                              const QStringList& remove);

} // namespace tagmoor
