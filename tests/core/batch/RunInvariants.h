#pragma once
// The three promises of every run, checked around it:
//  1. every source photo has its old bytes, or new bytes that carry the whole edit;
//  2. nothing exists outside the output folders that was not there before;
//  3. every photo of the run is either written with the edit or on the report.

#include "TestSupport.h"

#include "metadata/SafeFileReplace.h"

#include <QDirIterator>
#include <QMap>
#include <QSet>

#include <functional>

namespace tagmoor::test {

class RunInvariants {
public:
    using Predicate = std::function<bool(const QString& path)>;

    // `root` holds every file of the test; new entries may appear only in `outputFolders`
    // (for a run in place: the photos' own folders). `carriesEdit` tells whether a file
    // holds the whole edit. Takes the snapshot at once: make it right before the run.
    RunInvariants(QString root, QStringList outputFolders, QStringList sources,
                  Predicate carriesEdit)
        : m_root(std::move(root)), m_outputs(std::move(outputFolders)),
          m_sources(std::move(sources)), m_carriesEdit(std::move(carriesEdit)) {
        for (const QString& source : m_sources)
            m_before.insert(source, readBytes(source));
        m_entries = entriesBelow(m_root);
    }

    // The test itself put new bytes at a source during the run (a file swapped under it).
    void replacedDuringRun(const QString& source, const QByteArray& bytes) {
        m_before.insert(source, bytes);
    }

    // `outputOf` gives where a photo's output is expected; `reported` holds the paths on the
    // report (the run's problem list, or the command line's stderr).
    void check(const std::function<QString(const QString& source)>& outputOf,
               const QStringList& reported) const {
        SafeFileReplace::waitForReleases();
        for (const QString& source : m_sources) {
            SCOPED_TRACE(source.toStdString());
            const QByteArray now = readBytes(source);
            EXPECT_TRUE(now == m_before.value(source) || (!now.isEmpty() && m_carriesEdit(source)))
                << "a source lost its bytes without getting the edit";
            const QString output = outputOf(source);
            const bool written = QFileInfo(output).isFile() && m_carriesEdit(output);
            const bool onReport = std::any_of(reported.begin(), reported.end(),
                                              [&](const QString& r) { return r == source; });
            EXPECT_TRUE(written || onReport) << "neither written with the edit nor reported";
        }
        for (const QString& entry : entriesBelow(m_root)) {
            if (m_entries.contains(entry))
                continue;
            const bool inAnOutput =
                std::any_of(m_outputs.begin(), m_outputs.end(), [&](const QString& folder) {
                    const QString clean = QDir::cleanPath(folder);
                    return entry == clean || QFileInfo(entry).absolutePath() == clean;
                });
            EXPECT_TRUE(inAnOutput) << "new outside the output folders: " << entry.toStdString();
        }
    }

    // The same, with the paths named on lines of a command's stderr.
    void checkAgainstStderr(const std::function<QString(const QString&)>& outputOf,
                            const QByteArray& stderrText) const {
        QStringList reported;
        const QString text = QString::fromUtf8(stderrText);
        for (const QString& source : m_sources) {
            if (text.contains(source + QStringLiteral(": ")))
                reported << source;
        }
        check(outputOf, reported);
    }

private:
    // Every entry below `dir`, links not followed.
    static QSet<QString> entriesBelow(const QString& dir) {
        QSet<QString> all;
        QDirIterator it(dir, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                        QDirIterator::Subdirectories);
        while (it.hasNext())
            all.insert(it.next());
        return all;
    }

    QString m_root;
    QStringList m_outputs;
    QStringList m_sources;
    Predicate m_carriesEdit;
    QMap<QString, QByteArray> m_before;
    QSet<QString> m_entries;
};

} // namespace tagmoor::test
