#include "exchange/ListExchange.h"

#include "editor/EditorState.h"
#include "exchange/CsvExport.h"
#include "foundation/UserPrompt.h"
#include "workingset/WorkingSet.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QHash>
#include <QSaveFile>
#include <QtConcurrent/QtConcurrentRun>

namespace tagmoor {

namespace {

QString exportTitle() {
    return QCoreApplication::translate("ListExchange", "Export Metadata");
}

QString importTitle() {
    return QCoreApplication::translate("ListExchange", "Import Metadata");
}

// Writes the table of `photos` to `path`; the reason when it could not.
QString writeTable(const QList<CsvPhoto>& photos, const QString& path) {
    const QByteArray bytes = CsvExport::table(photos).toText();
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return {};
    return QCoreApplication::translate("ListExchange", "The file %1 cannot be written: %2")
        .arg(path, file.errorString());
}

} // namespace

ListExchange::ListExchange(WorkingSet& workingSet, EditorState& editorState, UserPrompt& prompt,
                           QObject* parent)
    : QObject(parent), m_workingSet(workingSet), m_editorState(editorState), m_prompt(prompt) {}

void ListExchange::setBusy(bool busy) {
    m_busy = busy;
}

bool ListExchange::exportMetadata() {
    if (m_busy || m_workingSet.isEmpty())
        return false;
    const QString path = m_prompt.savePanel(
        {QCoreApplication::translate("ListExchange", "Export the metadata of the photos to"),
         QString(),
         QStringLiteral("metadata.csv"),
         {QStringLiteral("csv")}});
    if (path.isEmpty())
        return false;
    // The list is shared with the worker, not copied: a change of the list meanwhile makes the
    // list a copy of its own.
    const QList<CGImageProperties> images = m_workingSet.workingImages();
    const bool anyMarked = m_workingSet.markedCount() > 0;
    setBusy(true);
    auto* watcher = new QFutureWatcher<QString>(this);
    connect(watcher, &QFutureWatcher<QString>::finished, this, [this, watcher] {
        watcher->deleteLater();
        setBusy(false);
        const QString problem = watcher->result();
        if (!problem.isEmpty())
            m_prompt.ask(Alert::ok(exportTitle(), problem));
        emit exported(problem.isEmpty());
    });
    watcher->setFuture(QtConcurrent::run([images, anyMarked, path] {
        // The marked photos, or every photo of the list when none is marked.
        QList<CsvPhoto> photos;
        for (const CGImageProperties& record : images) {
            if (!anyMarked || record.isSelected)
                photos << CsvPhoto{record.path(), record};
        }
        return writeTable(photos, path);
    }));
    return true;
}

bool ListExchange::importMetadata() {
    if (m_busy || m_workingSet.isEmpty())
        return false;
    OpenPanelRequest request;
    request.prompt = QCoreApplication::translate("ListExchange", "Import Metadata");
    request.message = QCoreApplication::translate(
        "ListExchange", "Choose a metadata table (CSV) whose rows name photos of the list.");
    request.canChooseDirectories = false;
    request.allowsMultipleSelection = false;
    request.allowedExtensions = {QStringLiteral("csv")};
    const QStringList chosen = m_prompt.openPanel(request);
    if (chosen.isEmpty())
        return false;
    setBusy(true);
    auto* watcher = new QFutureWatcher<ListImport>(this);
    connect(watcher, &QFutureWatcher<ListImport>::finished, this, [this, watcher] {
        watcher->deleteLater();
        setBusy(false);
        takeImport(watcher->result());
    });
    watcher->setFuture(
        QtConcurrent::run([path = chosen.first(), images = m_workingSet.workingImages()] {
            QStringList list;
            list.reserve(images.size());
            for (const CGImageProperties& record : images)
                list << record.path();
            return importTableForList(path, list);
        }));
    return true;
}

void ListExchange::takeImport(const ListImport& import) {
    if (!import.error.isEmpty()) {
        m_prompt.ask(importAlert(import));
        emit imported();
        return;
    }
    if (import.edits) {
        // The list may have changed while the table was read: the photos are found anew by
        // their paths, and those that went are passed over.
        QHash<QString, int> rows;
        const auto& images = m_workingSet.workingImages();
        rows.reserve(images.size());
        for (int i = 0; i < images.size(); ++i)
            rows.insert(images[i].path(), i);
        QList<int> marked;
        for (const QString& photo : import.match.photos) {
            if (const auto row = rows.constFind(photo); row != rows.constEnd())
                marked << *row;
        }
        m_editorState.photoValues.push_back(import.edits);
        m_workingSet.markOnly(marked);
    }
    emit imported();
    m_prompt.ask(importAlert(import));
}

Alert ListExchange::importAlert(const ListImport& import) {
    return Alert::ok(importTitle(),
                     import.error.isEmpty() ? listImportSummary(import) : import.error);
}

} // namespace tagmoor
