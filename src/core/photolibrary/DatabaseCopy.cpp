#include "photolibrary/DatabaseCopy.h"

#include "photolibrary/PhotoLibraryLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

namespace tagmoor {

namespace {

// Attempts before the last copy is kept even though the source still moved.
constexpr int maxAttempts = 8;

struct FileStamp {
    bool exists = false;
    qint64 size = 0;
    qint64 modifiedNs = 0;
    bool operator==(const FileStamp&) const = default;
};

FileStamp stampOf(const QString& path) {
    const QFileInfo info(path);
    if (!info.exists())
        return {};
    const QDateTime modified = info.lastModified();
    return {true, info.size(), modified.toMSecsSinceEpoch()};
}

QList<FileStamp> stampsOf(const QStringList& paths) {
    QList<FileStamp> out;
    for (const QString& path : paths)
        out << stampOf(path);
    return out;
}

// Reads `from` and writes `to` in blocks; the source is opened read-only and never locked.
bool copyFile(const QString& from, const QString& to) {
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly))
        return false;
    QFile target(to);
    if (!target.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    QByteArray block;
    while (!(block = source.read(1 << 20)).isEmpty()) {
        if (target.write(block) != block.size())
            return false;
    }
    return source.error() == QFileDevice::NoError;
}

} // namespace

DatabaseCopy::DatabaseCopy(const QString& cacheRoot) {
    QString root = cacheRoot;
    if (root.isEmpty())
        root = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
    if (root.isEmpty())
        root = QDir::tempPath();
    QDir().mkpath(root);
    m_dir = std::make_unique<QTemporaryDir>(root + QStringLiteral("/library-copy-XXXXXX"));
}

DatabaseCopy::~DatabaseCopy() = default;

const QStringList& DatabaseCopy::companionSuffixes() {
    static const QStringList suffixes{QStringLiteral("-wal"), QStringLiteral("-shm"),
                                      QStringLiteral("-journal"), QStringLiteral(".lock")};
    return suffixes;
}

bool DatabaseCopy::copyFrom(const QString& databasePath, const QString& copyName) {
    m_path.clear();
    if (!m_dir || !m_dir->isValid() || !QFileInfo(databasePath).isFile())
        return false;
    QStringList sources{databasePath};
    QStringList targets{m_dir->filePath(copyName)};
    for (const QString& suffix : companionSuffixes()) {
        sources << databasePath + suffix;
        targets << targets.first() + suffix;
    }
    for (int attempt = 1; attempt <= maxAttempts; ++attempt) {
        const QList<FileStamp> before = stampsOf(sources);
        bool copied = true;
        for (int i = 0; i < sources.size(); ++i) {
            QFile::remove(targets[i]);
            if (!before[i].exists)
                continue;
            // A companion may vanish between the look and the copy (a checkpoint ended).
            if (!copyFile(sources[i], targets[i]) && (i == 0 || QFileInfo::exists(sources[i])))
                copied = false;
        }
        if (!copied) {
            qCWarning(lcPhotoLibrary) << "Could not copy" << databasePath;
            return false;
        }
        if (stampsOf(sources) == before) {
            m_path = targets.first();
            return true;
        }
        qCDebug(lcPhotoLibrary) << "The database changed while it was copied; copying again"
                                << databasePath << "attempt" << attempt;
        QThread::msleep(20 * attempt);
    }
    // Still moving: the last copy is used; SQLite's recovery keeps whole transactions only.
    m_path = targets.first();
    return true;
}

} // namespace tagmoor
