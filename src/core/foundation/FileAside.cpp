#include "foundation/FileAside.h"

#include <QFile>
#include <QFileInfo>

namespace tagmoor {

namespace {

QString asideName(const QString& path, const QDateTime& when) {
    const QString base = path + QStringLiteral(".damaged-") +
                         when.toUTC().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString target = base;
    for (int n = 2; QFileInfo::exists(target) || QFileInfo(target).isSymLink(); ++n)
        target = base + QLatin1Char('-') + QString::number(n);
    return target;
}

} // namespace

QString keepFileAside(const QString& path, const QDateTime& when) {
    const QString target = asideName(path, when);
    return QFile::rename(path, target) ? target : QString();
}

QString copyFileAside(const QString& path, const QDateTime& when) {
    const QString target = asideName(path, when);
    return QFile::copy(path, target) ? target : QString();
}

} // namespace tagmoor
