#include "presets/PresetFile.h"

#include "foundation/Settings.h"

#include <QFile>
#include <QFileInfo>
#include <QIODevice>
#include <QSettings>

namespace tagmoor {

namespace {

// The first line of a presets file: what it is and the version of its layout.
const QByteArray kHeader = QByteArrayLiteral("TagmoorPresets 1\n");

bool readPresetFile(QIODevice& device, QSettings::SettingsMap& map) {
    const QByteArray bytes = device.readAll();
    if (!bytes.startsWith(kHeader))
        return false;
    map.insert(QString::fromLatin1(Settings::kPropertiesDataAP), bytes.mid(kHeader.size()));
    return true;
}

bool writePresetFile(QIODevice& device, const QSettings::SettingsMap& map) {
    const QVariant block = map.value(QString::fromLatin1(Settings::kPropertiesDataAP));
    const QByteArray bytes = block.toByteArray();
    return device.write(kHeader) == kHeader.size() && device.write(bytes) == bytes.size();
}

QSettings::Format presetFormat() {
    static const QSettings::Format format =
        QSettings::registerFormat(QStringLiteral("presets"), readPresetFile, writePresetFile);
    return format;
}

} // namespace

namespace PresetFile {

QString pathFor(const QString& settingsFile) {
    const QFileInfo info(settingsFile);
    return info.absolutePath() + QLatin1Char('/') + info.completeBaseName() +
           QStringLiteral(".presets");
}

ReadStatus read(const QString& path, QByteArray* block) {
    if (!QFileInfo::exists(path))
        return ReadStatus::Missing;
    QSettings file(path, presetFormat());
    const QVariant stored = file.value(QString::fromLatin1(Settings::kPropertiesDataAP));
    if (file.status() != QSettings::NoError || stored.typeId() != QMetaType::QByteArray)
        return ReadStatus::Damaged;
    *block = stored.toByteArray();
    return ReadStatus::Ok;
}

bool write(const QString& path, const QByteArray& block) {
    QSettings file(path, presetFormat());
    // A new file replaces the old one, or the write fails: never a file written in place.
    file.setAtomicSyncRequired(true);
    file.setValue(QString::fromLatin1(Settings::kPropertiesDataAP), block);
    file.sync();
    return file.status() == QSettings::NoError;
}

QString keepAside(const QString& path, const QDateTime& when) {
    const QString base = path + QStringLiteral(".damaged-") +
                         when.toUTC().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString target = base;
    for (int n = 2; QFileInfo::exists(target); ++n)
        target = base + QLatin1Char('-') + QString::number(n);
    return QFile::rename(path, target) ? target : QString();
}

} // namespace PresetFile

} // namespace tagmoor
