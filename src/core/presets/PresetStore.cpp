#include "presets/PresetStore.h"

#include "foundation/Settings.h"
#include "presets/PresetArchive.h"
#include "presets/PresetFile.h"
#include "presets/PresetLog.h"

#include <QDateTime>
#include <QSet>
#include <QSettings>

namespace tagmoor {

namespace {

QString lowered(const std::optional<QString>& name) {
    return name ? name->toLower() : QString();
}

} // namespace

PresetStore::PresetStore(Settings& settings, QObject* parent)
    : QObject(parent), m_settings(settings), m_fileName(PresetFile::pathFor(settings.fileName())) {
    m_saveTimer.setSingleShot(true);
    m_saveTimer.setInterval(100);
    connect(&m_saveTimer, &QTimer::timeout, this, &PresetStore::startSave);
    // One thread: saves are written in the order they were taken.
    m_savePool.setMaxThreadCount(1);
}

PresetStore::~PresetStore() {
    waitForSaves();
}

PresetStore::LoadReport PresetStore::load() {
    m_presets.clear();
    LoadReport report;
    QByteArray block;
    const auto now = QDateTime::currentDateTimeUtc();
    switch (PresetFile::read(m_fileName, &block)) {
    case PresetFile::ReadStatus::Ok:
        if (auto decoded = decodePresetArchive(block)) {
            m_presets = std::move(*decoded);
            break;
        }
        [[fallthrough]];
    case PresetFile::ReadStatus::Damaged:
        report.damaged = true;
        report.keptAs = PresetFile::keepAside(m_fileName, now);
        break;
    case PresetFile::ReadStatus::Missing:
        // Earlier versions kept the block in the main settings file: it moves over once.
        if (!m_settings.holdsAnyValue(Settings::kPropertiesDataAP))
            break;
        if (const std::optional<QByteArray> stored = m_settings.propertiesData()) {
            if (auto decoded = decodePresetArchive(*stored)) {
                m_presets = std::move(*decoded);
                if (PresetFile::write(m_fileName, *stored)) {
                    m_settings.remove(Settings::kPropertiesDataAP);
                    m_settings.sync();
                }
                break;
            }
        }
        report.damaged = true;
        report.keptAs = m_settings.moveAside(Settings::kPropertiesDataAP, now);
        break;
    }
    if (report.damaged)
        qCWarning(lcPresets).noquote()
            << "The saved presets could not be read; the list starts empty and the stored "
               "block is kept as"
            << report.keptAs;
    emit presetsChanged();
    return report;
}

QList<ActualPreset> PresetStore::menuRows() const {
    QList<ActualPreset> rows;
    rows.reserve(m_presets.size() + 2);
    const auto fixedRow = [](const char* name) {
        return ActualPreset{std::nullopt, QString::fromLatin1(name), makeEmptyRecord(std::nullopt),
                            OriginalFinalDate{}};
    };
    rows.append(fixedRow(NewConfigurationRow));
    rows.append(m_presets);
    rows.append(fixedRow(EditPresetsRow));
    return rows;
}

QString PresetStore::defaultName() const {
    QSet<QString> taken;
    for (const ActualPreset& preset : m_presets)
        taken.insert(lowered(preset.name));
    const QString word = QStringLiteral("Preset");
    if (!taken.contains(word.toLower()))
        return word;
    for (qsizetype n = 1;; ++n) {
        const QString candidate = word + QString::number(n);
        if (!taken.contains(candidate.toLower()))
            return candidate;
    }
}

PresetStore::NameCheck PresetStore::checkName(const QString& name, qsizetype exceptPosition) const {
    if (name.isEmpty())
        return NameCheck::Empty;
    const QString wanted = name.toLower();
    for (qsizetype i = 0; i < m_presets.size(); ++i)
        if (i != exceptPosition && lowered(m_presets[i].name) == wanted)
            return NameCheck::Taken;
    return NameCheck::Ok;
}

qsizetype PresetStore::addPreset(const QString& name) {
    m_presets.append(makeNewPreset(name.isEmpty() ? defaultName() : name, m_presets.size()));
    changed();
    return m_presets.size() - 1;
}

qsizetype PresetStore::appendPreset(const ActualPreset& preset) {
    m_presets.append(preset);
    changed();
    return m_presets.size() - 1;
}

bool PresetStore::removePreset(qsizetype position) {
    if (!isValidPosition(position))
        return false;
    m_presets.removeAt(position);
    changed();
    return true;
}

std::optional<Alert> PresetStore::renamePreset(qsizetype position, const QString& name) {
    if (!isValidPosition(position))
        return std::nullopt;
    switch (checkName(name, position)) {
    case NameCheck::Empty:
        return Alert::ok(QStringLiteral("No name specified!"),
                         QStringLiteral("Please enter a Preset name to be saved."));
    case NameCheck::Taken:
        return Alert::ok(QStringLiteral("Preset name already exists"),
                         QStringLiteral("A Preset with same name already exists. Please enter "
                                        "a new Preset name."));
    case NameCheck::Ok:
        break;
    }
    m_presets[position].name = name;
    changed();
    return std::nullopt;
}

bool PresetStore::replaceValues(qsizetype position, const CGImageProperties& properties,
                                const OriginalFinalDate& timeSetting) {
    if (!isValidPosition(position))
        return false;
    ActualPreset& preset = m_presets[position];
    preset.properties = properties;
    preset.timeSetting = timeSetting;
    changed();
    return true;
}

void PresetStore::setSaveDelay(int milliseconds) {
    m_saveTimer.setInterval(milliseconds);
}

void PresetStore::scheduleSave() {
    m_saveTimer.start();
}

void PresetStore::waitForSaves() {
    if (m_saveTimer.isActive())
        startSave();
    m_savePool.waitForDone();
}

void PresetStore::changed() {
    emit presetsChanged();
    scheduleSave();
}

void PresetStore::startSave() {
    m_saveTimer.stop();
    const quint64 generation = ++m_latestSave;
    // A copy of the list: the list shares its elements until the main thread changes it.
    m_savePool.start([this, snapshot = m_presets, generation] {
        if (generation != m_latestSave.load())
            return; // a newer copy is queued behind this one
        const bool ok = PresetFile::write(m_fileName, encodePresetArchive(snapshot));
        if (!ok)
            qCWarning(lcPresets) << "The presets could not be saved to" << m_fileName;
        QMetaObject::invokeMethod(
            this, [this, ok] { emit saveFinished(ok); }, Qt::QueuedConnection);
    });
}

} // namespace tagmoor
