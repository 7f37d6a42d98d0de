#include "presets/PresetFile.h"

#include "foundation/BoundedFile.h"
#include "foundation/FileAside.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>

namespace tagmoor {

namespace {

// The first line of a presets file: what it is and the version of its layout.
const QByteArray kHeader = QByteArrayLiteral("TagmoorPresets 1\n");

} // namespace

namespace PresetFile {

QString pathFor(const QString& settingsFile) {
    const QFileInfo info(settingsFile);
    return info.absolutePath() + QLatin1Char('/') + info.completeBaseName() +
           QStringLiteral(".presets");
}

ReadStatus read(const QString& path, QByteArray* block) {
    const BoundedRead file = readBoundedFile(path, kMaxBytes);
    if (file.status == BoundedRead::Status::Missing)
        return ReadStatus::Missing;
    if (!file.ok() || !file.bytes.startsWith(kHeader))
        return ReadStatus::Damaged;
    *block = file.bytes.mid(kHeader.size());
    return ReadStatus::Ok;
}

bool write(const QString& path, const QByteArray& block) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QSaveFile file(path);
    // A new file replaces the old one, or the write fails: never a file written in place.
    file.setDirectWriteFallback(false);
    return file.open(QIODevice::WriteOnly) && file.write(kHeader) == kHeader.size() &&
           file.write(block) == block.size() && file.commit();
}

QString keepAside(const QString& path, const QDateTime& when) {
    return keepFileAside(path, when);
}

QString copyAside(const QString& path, const QDateTime& when) {
    return copyFileAside(path, when);
}

Lock::Lock(const QString& path, int timeoutMs)
    : m_lock(std::make_unique<QLockFile>(path + QStringLiteral(".lock"))) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    // A save holds the lock for a moment; one held this long belongs to a hung process.
    m_lock->setStaleLockTime(60000);
    m_lock->tryLock(timeoutMs);
}

Lock::~Lock() = default;

bool Lock::isLocked() const {
    return m_lock->isLocked();
}

} // namespace PresetFile

} // namespace tagmoor
