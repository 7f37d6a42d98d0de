#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>

#include <vector>

namespace tagmoor {

// A set of paths, or of other "folder/name" texts such as locations, that a run keeps for
// every photo it has seen. A QSet<QString> of whole paths spends well over a hundred bytes on
// each; here each folder is kept once and each name as UTF-8 in one block, found through an
// open hash table of entry numbers: a path costs its name's length and a dozen bytes more.
// Texts that UTF-8 cannot hold exactly (a lone surrogate) are kept as they are.
class CompactPathSet {
public:
    bool contains(const QString& path) const;
    // Adds `path`; false when it was in the set already.
    bool insert(const QString& path);
    qsizetype size() const { return qsizetype(m_ends.size()) + m_others.size(); }

private:
    // The entry of `path`: its folder's number and its name, as bytes; empty when the folder
    // is not known and `addFolder` is false.
    QByteArray keyOf(const QString& path, bool addFolder);
    QByteArray keyOf(const QString& path) const;
    QByteArrayView entry(quint32 index) const;
    // The slot where `key` is, or the empty slot where it would go.
    std::size_t slotOf(QByteArrayView key) const;
    void grow();

    QHash<QString, quint32> m_folders;
    QByteArray m_bytes;           // the entries, one after another
    std::vector<quint32> m_ends;  // where each entry ends in m_bytes
    std::vector<quint32> m_slots; // 0 for an empty slot, else the entry's number + 1
    QSet<QString> m_others;
};

} // namespace tagmoor
