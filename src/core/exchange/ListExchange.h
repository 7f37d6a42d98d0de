#pragma once

#include "exchange/ListTables.h"
#include "foundation/UserPrompt.h"

#include <QObject>
#include <QString>

namespace tagmoor {

class WorkingSet;
struct EditorState;

// File > Export Metadata... and File > Import Metadata... of the window. Export writes the
// marked photos (all of them when none is marked) as a metadata table in the columns of the
// command line's export. Import reads a table, matches its rows to the photos of the list
// (matchTableToList), keeps the matched rows as per-photo edits in the editor state, which the
// review and Start Process take like the form's edits, marks the matched photos and sums up
// what it found in an alert. Reading, matching and writing run on a worker thread, so that a
// table of many thousand rows never holds up the window. Main thread.
class ListExchange : public QObject {
    Q_OBJECT
public:
    ListExchange(WorkingSet& workingSet, EditorState& editorState, UserPrompt& prompt,
                 QObject* parent = nullptr);

    // Asks where to save, then writes the table; false when nothing was started.
    bool exportMetadata();
    // Asks for a table, then reads it; false when nothing was started.
    bool importMetadata();
    // Whether an export or an import is running.
    bool isBusy() const { return m_busy; }

    // Takes a read table into the list: what importMetadata() does when the reading is done.
    void takeImport(const ListImport& import);

    // The alert that sums an import up, or tells why the table could not be read.
    static Alert importAlert(const ListImport& import);

signals:
    // An export has been written (`ok`) or failed to be; the alert has been shown for a failure.
    void exported(bool ok);
    // An import has been taken in (the per-photo edits may have changed) and its alert shown.
    void imported();

private:
    void setBusy(bool busy);

    WorkingSet& m_workingSet;
    EditorState& m_editorState;
    UserPrompt& m_prompt;
    bool m_busy = false;
};

} // namespace tagmoor
