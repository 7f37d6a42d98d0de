#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

namespace tagmoor {

// One release of an update feed (an RSS channel whose items carry an enclosure with version
// attributes).
struct AppcastItem {
    QString title;
    QString version;      // the build version (sparkle:version or the item's own tag)
    QString shortVersion; // the displayed version (sparkle:shortVersionString)
    QUrl downloadUrl;
    qint64 length = 0;
    bool operator==(const AppcastItem&) const = default;
};

// The items of a feed; empty for anything that is not such a feed.
QList<AppcastItem> parseAppcast(const QByteArray& xml);

// Compares dotted versions number by number (missing parts count as 0; non-numeric parts
// compare as text). Negative, 0 or positive.
int compareVersions(const QString& a, const QString& b);

// The newest item newer than `currentVersion`, if any.
std::optional<AppcastItem> newestUpdate(const QList<AppcastItem>& items,
                                        const QString& currentVersion);

} // namespace tagmoor
