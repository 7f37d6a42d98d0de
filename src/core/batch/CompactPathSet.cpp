#include "batch/CompactPathSet.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace tagmoor {

namespace {

constexpr std::size_t kFirstSlots = 64;

std::size_t hashOf(QByteArrayView key) {
    return qHash(key, 0);
}

QByteArray withFolder(quint32 folder, QStringView name) {
    QByteArray key(sizeof folder, Qt::Uninitialized);
    std::memcpy(key.data(), &folder, sizeof folder);
    return key + name.toUtf8();
}

} // namespace

QByteArray CompactPathSet::keyOf(const QString& path, bool addFolder) {
    // The folder keeps its "/": "a.jpg" and "/a.jpg" are in different folders.
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    const QString folder = path.left(slash + 1);
    auto it = m_folders.constFind(folder);
    if (it == m_folders.constEnd()) {
        if (!addFolder)
            return {};
        it = m_folders.insert(folder, quint32(m_folders.size()));
    }
    return withFolder(*it, QStringView(path).mid(slash + 1));
}

QByteArray CompactPathSet::keyOf(const QString& path) const {
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    const auto it = m_folders.constFind(path.left(slash + 1));
    return it == m_folders.constEnd() ? QByteArray()
                                      : withFolder(*it, QStringView(path).mid(slash + 1));
}

QByteArrayView CompactPathSet::entry(quint32 index) const {
    const quint32 begin = index == 0 ? 0 : m_ends[index - 1];
    return QByteArrayView(m_bytes.constData() + begin, m_ends[index] - begin);
}

std::size_t CompactPathSet::slotOf(QByteArrayView key) const {
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t slot = hashOf(key) & mask;; slot = (slot + 1) & mask) {
        const quint32 taken = m_slots[slot];
        if (taken == 0 || entry(taken - 1) == key)
            return slot;
    }
}

void CompactPathSet::grow() {
    std::vector<quint32> table(std::max(kFirstSlots, m_slots.size() * 2), 0);
    const std::size_t mask = table.size() - 1;
    for (quint32 i = 0; i < quint32(m_ends.size()); ++i) {
        std::size_t slot = hashOf(entry(i)) & mask;
        while (table[slot] != 0)
            slot = (slot + 1) & mask;
        table[slot] = i + 1;
    }
    m_slots = std::move(table);
}

bool CompactPathSet::contains(const QString& path) const {
    if (!m_slots.empty() && path.isValidUtf16()) {
        const QByteArray key = keyOf(path);
        if (!key.isEmpty() && m_slots[slotOf(key)] != 0)
            return true;
    }
    return !m_others.isEmpty() && m_others.contains(path);
}

bool CompactPathSet::insert(const QString& path) {
    if (contains(path))
        return false;
    const QByteArray key = path.isValidUtf16() ? keyOf(path, true) : QByteArray();
    // Past 4 GiB of names the offsets would not fit; such a set keeps the rest as texts.
    if (key.isEmpty() ||
        quint64(m_bytes.size()) + quint64(key.size()) > std::numeric_limits<quint32>::max()) {
        m_others.insert(path);
        return true;
    }
    if ((m_ends.size() + 1) * 4 > m_slots.size() * 3)
        grow();
    m_bytes.append(key);
    m_ends.push_back(quint32(m_bytes.size()));
    m_slots[slotOf(key)] = quint32(m_ends.size());
    return true;
}

} // namespace tagmoor
