#include "geo/GeoData.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QStandardPaths>

Q_LOGGING_CATEGORY(lcGeoData, "tagmoor.geo.data")

namespace tagmoor {

QString GeoData::locate(const QString& fileName) {
    QStringList folders;
    const QString fromEnvironment = qEnvironmentVariable("TAGMOOR_DATA_DIR");
    if (!fromEnvironment.isEmpty())
        folders.append(fromEnvironment);
    if (QCoreApplication::instance())
        folders.append(QCoreApplication::applicationDirPath() +
                       QStringLiteral("/../share/tagmoor"));
    for (const QString& folder :
         QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation))
        folders.append(folder + QStringLiteral("/tagmoor"));
#ifdef TAGMOOR_SOURCE_DATA_DIR
    folders.append(QStringLiteral(TAGMOOR_SOURCE_DATA_DIR));
#endif
    for (const QString& folder : std::as_const(folders)) {
        const QFileInfo info(QDir(folder), fileName);
        if (info.isFile())
            return info.absoluteFilePath();
    }
    qCWarning(lcGeoData) << "no data file" << fileName << "in" << folders;
    return {};
}

QByteArray GeoData::readCompressed(const QString& path) {
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray data = qUncompress(file.readAll());
    if (data.isEmpty())
        qCWarning(lcGeoData) << "damaged data file" << path;
    return data;
}

} // namespace tagmoor
