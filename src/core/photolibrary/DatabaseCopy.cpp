#include "photolibrary/DatabaseCopy.h"

#include "photolibrary/PhotoLibraryLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>

#include <sys/stat.h>

namespace tagmoor {

namespace {

// Attempts at a whole copy before the database counts as unreadable for now; the waits between
// them add up to about two seconds.
constexpr int maxAttempts = 40;

struct FileStamp {
    bool exists = false;
    qint64 size = 0;
    qint64 modifiedNs = 0;
    bool operator==(const FileStamp&) const = default;
};

FileStamp stampOf(const QString& path) {
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return {true, qint64(status.st_size),
            qint64(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec};
}

// The part of a write-ahead log's header that changes whenever the log starts again from its
// beginning (its salts), with the log's size; empty when there is no whole header.
struct LogStart {
    QByteArray salts;
    qint64 size = 0;
};

LogStart logStartOf(const QString& path) {
    QFile log(path);
    if (!log.open(QIODevice::ReadOnly))
        return {};
    const QByteArray header = log.read(32);
    if (header.size() < 32)
        return {};
    return {header.mid(16, 8), log.size()};
}

// A copy of the database file taken while the log was written to is whole once the log copied
// after it is the same log, grown or not: every page that a checkpoint wrote into the file
// meanwhile is still in that log, and opening the copy lays the log over the file again.
bool logCoversFileCopy(const LogStart& before, const LogStart& copied) {
    return !before.salts.isEmpty() && copied.salts == before.salts && copied.size >= before.size;
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
    // The shared-memory index of the log is left behind: it may be a moment older or newer
    // than the log, and SQLite builds it again from the log copied beside it.
    static const QStringList suffixes{QStringLiteral("-wal"), QStringLiteral("-journal"),
                                      QStringLiteral(".lock")};
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
        const LogStart logBefore = logStartOf(sources[1]);
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
        if (stampsOf(sources) == before || logCoversFileCopy(logBefore, logStartOf(targets[1]))) {
            m_path = targets.first();
            return true;
        }
        qCDebug(lcPhotoLibrary) << "The database changed while it was copied; copying again"
                                << databasePath << "attempt" << attempt;
        QThread::msleep(std::min(attempt, 10) * 5);
    }
    // A copy taken while the file itself was written may hold half of a transaction: it is
    // never used.
    qCWarning(lcPhotoLibrary) << "The database kept changing while it was copied" << databasePath;
    return false;
}

} // namespace tagmoor
