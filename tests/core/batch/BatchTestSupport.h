#pragma once
// Helpers for the batch tests: run values as the screens leave them, runs over records,
// tags read back through the bridge, and checksums of whole folders.

#include "TestSupport.h"

#include "batch/BatchDriver.h"
#include "batch/BatchObserver.h"
#include "batch/FormSnapshot.h"
#include "batch/ListPhotoSource.h"
#include "batch/PhotoPipeline.h"
#include "metadata/MetadataTest.h"
#include "metadata/SafeFileReplace.h"
#include "model/FormFieldTable.h"
#include "rename/RenameNumbering.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QMap>
#include <QRegularExpression>
#include <QUrl>

#include <optional>

namespace tagmoor::test {

// Values of an edit run with an empty form and nothing flagged.
inline RunValues editRun(ProcessingMode mode, const std::optional<QString>& out = std::nullopt) {
    RunValues v;
    v.processingMode = mode;
    v.editedProperties = FormSnapshot::empty();
    v.destinationFolder = out;
    v.isDestinationPathAsSource = !out;
    return v;
}

// Types a value into a form field and marks it edited, as the editor does.
inline void edit(RunValues& v, const QString& field, const QString& text) {
    const FormField* f = findFormField(field);
    ASSERT_NE(f, nullptr) << field.toStdString();
    ASSERT_FALSE(FormSnapshot::setText(v.editedProperties, *f, text).has_value());
    v.fieldEditedFlags.set(f->field);
}

inline CGImageProperties recordOf(const QString& path) {
    return makeEmptyRecord(QUrl::fromLocalFile(path));
}

inline QList<CGImageProperties> recordsOf(const QStringList& paths) {
    QList<CGImageProperties> records;
    for (const QString& p : paths)
        records << recordOf(p);
    return records;
}

inline BatchResult runBatch(const RunValues& values, const QList<CGImageProperties>& records,
                            RenameNumbering& numbering, int threads = 1,
                            BatchObserver* observer = nullptr, StopControl* stop = nullptr) {
    const PhotoPipeline pipeline(values);
    StopControl ownStop;
    BatchDriver driver(pipeline, numbering, stop ? *stop : ownStop, observer, threads);
    const BatchResult result = driver.run(ListPhotoSource(records));
    // The writer drops the replaced files' hidden names in the background; let it finish so
    // that folders can be compared.
    SafeFileReplace::waitForReleases();
    return result;
}

inline BatchResult runBatch(const RunValues& values, const QList<CGImageProperties>& records) {
    RenameNumbering numbering;
    return runBatch(values, records, numbering);
}

// The text of a tag as the bridge reads it back; nothing when the file lacks it.
inline std::optional<QString> tagOf(const QString& path, const QString& key) {
    const auto all = MetadataTest().readAllPropertiesFrom(path);
    if (!all)
        return std::nullopt;
    const QString block = key.section(QLatin1Char('.'), 0, 0).toLower();
    const QVariantMap tags = all->value(block).toMap();
    if (!tags.contains(key))
        return std::nullopt;
    return tags.value(key).toString();
}

inline QByteArray checksum(const QString& path) {
    return QCryptographicHash::hash(readBytes(path), QCryptographicHash::Sha256);
}

// Every file below `dir` (relative path -> checksum).
inline QMap<QString, QByteArray> folderChecksums(const QString& dir) {
    SafeFileReplace::waitForReleases();
    QMap<QString, QByteArray> sums;
    QDirIterator it(dir, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString p = it.next();
        sums.insert(QDir(dir).relativeFilePath(p), checksum(p));
    }
    return sums;
}

// The warnings of exiftool's validation, by file: one "[minor] ..." text each, as often as
// they are given. One run of exiftool over all the files: its start costs more than a file.
inline QMap<QString, QStringList> validationWarnings(const QStringList& paths) {
    QMap<QString, QStringList> warnings;
    if (paths.isEmpty())
        return warnings;
    const ToolResult r =
        runTool(QStringLiteral("exiftool"),
                QStringList{"-validate", "-warning", "-a", "-G1", "-s"} + paths, 300000);
    QString current = paths.size() == 1 ? paths.first() : QString();
    static const QRegularExpression header(QStringLiteral("^======== (.*)$"));
    static const QRegularExpression warning(QStringLiteral(R"(^\[ExifTool\]\s+Warning\s+: (.*)$)"));
    for (const QString& line : QString::fromUtf8(r.out).split(QLatin1Char('\n'))) {
        if (const auto m = header.match(line); m.hasMatch())
            current = m.captured(1);
        else if (const auto w = warning.match(line); w.hasMatch())
            warnings[current] << w.captured(1);
    }
    return warnings;
}

inline QStringList validationWarnings(const QString& path) {
    return validationWarnings(QStringList{path}).value(path);
}

inline QStringList fileNames(const QString& dir) {
    SafeFileReplace::waitForReleases();
    return QDir(dir).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

// Presses Stop as the given photo starts; the test answers the question the run then waits on.
class StopAt : public BatchObserver {
public:
    StopAt(StopControl& stop, int at) : m_stop(stop), m_at(at) {}
    void photoStarted(const PhotoPlan& plan) override {
        if (plan.processed == m_at)
            m_stop.requestPause();
    }

private:
    StopControl& m_stop;
    int m_at;
};

} // namespace tagmoor::test
