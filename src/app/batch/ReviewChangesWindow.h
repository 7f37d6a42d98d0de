#pragma once

#include "batch/AskedKeys.h"
#include "batch/ChangePlan.h"
#include "batch/RunValues.h"
#include "model/CGImageProperties.h"

#include <QDialog>
#include <QFutureWatcher>

class QCheckBox;
class QLabel;
class QPushButton;
class QTableWidget;

namespace tagmoor {

// "Review changes": the plan of the run that Start Process would make, as a table before
// anything is written. Each marked photo has its rows: the new name, the skip and its reason,
// or each tag that changes with its value now and after the run. The plan is worked out on a
// worker thread on scratch copies of the photos; the photos themselves are never touched.
class ReviewChangesWindow : public QDialog {
    Q_OBJECT
public:
    ReviewChangesWindow(const RunValues& values, QList<CGImageProperties> photos,
                        qint64 firstNumber, QWidget* parent = nullptr);
    ~ReviewChangesWindow() override;

    QTableWidget* table() const { return m_table; }
    QLabel* summary() const { return m_summary; }
    bool isReady() const { return m_ready; }
    const QList<PhotoChanges>& plan() const { return m_plan; }

signals:
    // The plan is in the table.
    void ready();
    // The user goes on to Start Process.
    void startClicked();

private:
    void showPlan();
    // The table from the plan: by default only the tags the run was asked to change.
    void fillTable();
    void addRow(const QString& photo, const QString& what, const QString& now, const QString& after,
                bool problem);

    QFutureWatcher<QList<PhotoChanges>> m_watcher;
    QList<PhotoChanges> m_plan;
    std::optional<QSet<QString>> m_asked;
    QCheckBox* m_showAll;
    QTableWidget* m_table;
    QLabel* m_summary;
    QPushButton* m_start;
    bool m_ready = false;
};

} // namespace tagmoor
