#include "presets/PresetStore.h"

#include "foundation/Settings.h"
#include "presets/PresetArchive.h"
#include "presets/PresetCheck.h"
#include "presets/PresetFile.h"
#include "presets/PresetLog.h"
#include "presets/PresetMerge.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QSet>

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
    m_photoPool.setMaxThreadCount(1);
    // Another program's write comes as a few changes of the folder in a row.
    m_watchTimer.setSingleShot(true);
    m_watchTimer.setInterval(200);
    connect(&m_watchTimer, &QTimer::timeout, this, &PresetStore::syncWithFile);
}

PresetStore::~PresetStore() {
    waitForSaves();
    m_photoPool.waitForDone();
}

PresetStore::LoadReport PresetStore::load() {
    waitForSaves();
    m_presets.clear();
    m_disk = {};
    LoadReport report;
    QByteArray block;
    const auto now = QDateTime::currentDateTimeUtc();
    const auto take = [&](const QByteArray& stored) {
        std::optional<PresetArchiveContents> contents = readPresetArchive(stored);
        if (!contents)
            return false;
        m_presets = std::move(contents->presets);
        report.refused = std::move(contents->refused);
        return true;
    };
    switch (PresetFile::read(m_fileName, &block)) {
    case PresetFile::ReadStatus::Ok:
        if (take(block)) {
            m_disk = {true, block, m_presets};
            if (report.refused.isEmpty())
                break;
            // The file as it was is kept; the file itself then holds the presets kept, so
            // that what was left out is told once.
            report.keptAs = PresetFile::copyAside(m_fileName, now);
            const PresetFile::Lock lock(m_fileName);
            const QByteArray kept = encodePresetArchive(m_presets);
            if (!report.keptAs.isEmpty() && lock.isLocked() && PresetFile::write(m_fileName, kept))
                m_disk = {true, kept, m_presets};
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
            if (take(*stored)) {
                const QByteArray kept = encodePresetArchive(m_presets);
                const PresetFile::Lock lock(m_fileName);
                if (lock.isLocked() && PresetFile::write(m_fileName, kept)) {
                    m_disk = {true, kept, m_presets};
                    if (report.refused.isEmpty()) {
                        m_settings.remove(Settings::kPropertiesDataAP);
                        m_settings.sync();
                    } else {
                        report.keptAs = m_settings.moveAside(Settings::kPropertiesDataAP, now);
                    }
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
    for (const RefusedPreset& r : std::as_const(report.refused))
        qCWarning(lcPresets).noquote()
            << "Preset" << r.position + 1 << r.name << "was left out:" << r.reason;
    m_lastLoad = report;
    emit presetsChanged();
    readPhotos();
    return report;
}

ActualPreset PresetStore::preset(qsizetype position) const {
    if (!isValidPosition(position))
        return {};
    ActualPreset p = m_presets.at(position);
    if (p.properties && p.properties->url && p.properties->url->isLocalFile()) {
        const auto read = m_photos.constFind(p.properties->url->toLocalFile());
        if (read != m_photos.cend() && read->has_value())
            applyPresetPhoto(*p.properties, **read);
    }
    return p;
}

void PresetStore::readPhotos() {
    for (const ActualPreset& p : std::as_const(m_presets)) {
        if (!p.properties || !p.properties->url || !p.properties->url->isLocalFile())
            continue;
        const QString path = p.properties->url->toLocalFile();
        if (path.isEmpty() || m_photos.contains(path))
            continue;
        m_photos.insert(path, std::nullopt); // on its way
        m_photoPool.start([this, path] {
            QString why;
            std::optional<PresetPhotoFacts> facts = readPresetPhoto(path, &why);
            if (!facts)
                qCInfo(lcPresets).noquote()
                    << "The photo of a preset," << path << ", could not be read:" << why;
            QMetaObject::invokeMethod(
                this,
                [this, path, facts = std::move(facts)] {
                    // Only preset() shows them: the list itself is as it was.
                    if (facts)
                        m_photos.insert(path, facts);
                },
                Qt::QueuedConnection);
        });
    }
}

void PresetStore::waitForPhotos() {
    m_photoPool.waitForDone();
    QCoreApplication::sendPostedEvents(this);
}

QList<ActualPreset> PresetStore::menuRows() const {
    QList<ActualPreset> rows;
    rows.reserve(m_presets.size() + 2);
    const auto fixedRow = [](const char* name) {
        return ActualPreset{std::nullopt, QString::fromLatin1(name), makeEmptyRecord(std::nullopt),
                            OriginalFinalDate{}, std::nullopt};
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
    if (presetNameRefusal(name))
        return NameCheck::Unfit;
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
        return Alert::ok(
            QCoreApplication::translate("PresetStore", "No name specified!"),
            QCoreApplication::translate("PresetStore", "Please enter a Preset name to be saved."));
    case NameCheck::Unfit:
        return Alert::ok(QCoreApplication::translate("PresetStore", "Invalid Preset name."),
                         unfitPresetNameText());
    case NameCheck::Taken:
        return Alert::ok(QCoreApplication::translate("PresetStore", "Preset name already exists"),
                         QCoreApplication::translate(
                             "PresetStore", "A Preset with same name already exists. Please enter "
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

bool PresetStore::replaceExtras(qsizetype position, const ExtraEdits& extras) {
    if (!isValidPosition(position))
        return false;
    ActualPreset& preset = m_presets[position];
    if (extras.writesTags() || extras.syncCopies)
        preset.extras = extras;
    else
        preset.extras.reset();
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
    // The lists that saves merged in are taken before this returns.
    QCoreApplication::sendPostedEvents(this);
}

void PresetStore::watchFile(bool on) {
    if (!on) {
        delete m_watcher;
        m_watcher = nullptr;
        return;
    }
    if (m_watcher)
        return;
    // The file is replaced whole by every write: its folder tells of each new one.
    const QString folder = QFileInfo(m_fileName).absolutePath();
    QDir().mkpath(folder);
    m_watcher = new QFileSystemWatcher({folder}, this);
    connect(m_watcher, &QFileSystemWatcher::directoryChanged, this,
            [this] { m_watchTimer.start(); });
}

void PresetStore::syncWithFile() {
    startSave();
}

void PresetStore::changed() {
    emit presetsChanged();
    readPhotos();
    scheduleSave();
}

void PresetStore::startSave() {
    m_saveTimer.stop();
    const quint64 generation = ++m_latestSave;
    // A copy of the list: the list shares its elements until the main thread changes it.
    m_savePool.start([this, snapshot = m_presets, generation] {
        if (generation != m_latestSave.load())
            return; // a newer copy is queued behind this one
        SaveOutcome outcome = saveOnThread(snapshot);
        if (!outcome.ok)
            qCWarning(lcPresets) << "The presets could not be saved to" << m_fileName;
        QMetaObject::invokeMethod(
            this, [this, outcome = std::move(outcome), snapshot] { saveDone(outcome, snapshot); },
            Qt::QueuedConnection);
    });
}

PresetStore::SaveOutcome PresetStore::saveOnThread(const QList<ActualPreset>& mine) {
    SaveOutcome outcome;
    const PresetFile::Lock lock(m_fileName);
    if (!lock.isLocked()) {
        qCWarning(lcPresets) << "The presets file is locked by another program:" << m_fileName;
        return outcome;
    }
    QByteArray onDisk;
    const PresetFile::ReadStatus status = PresetFile::read(m_fileName, &onDisk);
    outcome.written = mine;
    if (status == PresetFile::ReadStatus::Ok && !(m_disk.known && onDisk == m_disk.block)) {
        if (std::optional<PresetArchiveContents> theirs = readPresetArchive(onDisk)) {
            outcome.written = mergePresetLists(m_disk.presets, mine, theirs->presets);
            outcome.merged = true;
        } else {
            PresetFile::keepAside(m_fileName, QDateTime::currentDateTimeUtc());
        }
    } else if (status == PresetFile::ReadStatus::Damaged) {
        const QString kept = PresetFile::keepAside(m_fileName, QDateTime::currentDateTimeUtc());
        qCWarning(lcPresets) << "The presets file could not be read; it is kept as" << kept;
    }
    const QByteArray block = encodePresetArchive(outcome.written);
    outcome.ok = (status == PresetFile::ReadStatus::Ok && block == onDisk) ||
                 PresetFile::write(m_fileName, block);
    if (outcome.ok)
        m_disk = {true, block, outcome.written};
    return outcome;
}

void PresetStore::saveDone(const SaveOutcome& outcome, const QList<ActualPreset>& mine) {
    if (outcome.ok && outcome.merged) {
        // What the other program changed comes into the list as it is now.
        const QList<ActualPreset> merged = mergePresetLists(mine, m_presets, outcome.written);
        if (encodePresetArchive(merged) != encodePresetArchive(m_presets)) {
            m_presets = merged;
            emit presetsChanged();
            emit changedElsewhere();
            readPhotos();
        }
    }
    emit saveFinished(outcome.ok);
}

} // namespace tagmoor
