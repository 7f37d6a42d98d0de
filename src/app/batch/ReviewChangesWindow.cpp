#include "app/batch/ReviewChangesWindow.h"

#include "batch/ListPhotoSource.h"
#include "batch/PhotoPipeline.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

#include <algorithm>

namespace tagmoor {

namespace {

QString fileName(const QString& path) {
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

} // namespace

ReviewChangesWindow::ReviewChangesWindow(const RunValues& values, QList<CGImageProperties> photos,
                                         qint64 firstNumber, QWidget* parent)
    : QDialog(parent), m_asked(askedKeys(values)), m_showAll(new QCheckBox(tr("Show all tags"))),
      m_table(new QTableWidget(0, 4)), m_summary(new QLabel),
      m_start(new QPushButton(tr("Start Process..."))) {
    setObjectName(QStringLiteral("ReviewChangesWindow"));
    setWindowTitle(tr("Review Changes"));
    setAttribute(Qt::WA_DeleteOnClose);

    auto* title = new QLabel(tr("Review Changes"));
    QFont font = title->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.3);
    title->setFont(font);
    auto* note = new QLabel(tr("What Start Process would do to the marked photos, before "
                               "anything is written. The output folder is chosen when the run "
                               "starts; names are shown in the photos' own folders."));
    note->setWordWrap(true);
    note->setForegroundRole(QPalette::PlaceholderText);
    m_summary->setObjectName(QStringLiteral("lblReviewSummary"));
    m_summary->setText(tr("Working out the changes..."));

    m_table->setObjectName(QStringLiteral("tableReviewChanges"));
    m_table->setAccessibleName(tr("Changes"));
    m_table->setHorizontalHeaderLabels({tr("Photo"), tr("Change"), tr("Now"), tr("After the Run")});
    m_table->verticalHeader()->hide();
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setAlternatingRowColors(true);
    m_table->setWordWrap(false);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    m_table->horizontalHeader()->setStretchLastSection(true);

    auto* close = new QPushButton(tr("Close"));
    close->setObjectName(QStringLiteral("btnCloseReview"));
    m_start->setObjectName(QStringLiteral("btnStartFromReview"));
    m_start->setEnabled(false);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_start, &QPushButton::clicked, this, [this] {
        accept();
        emit startClicked();
    });
    // Writing a tag can change others (offsets, a character set, the copies the standard form
    // keeps in step); those are shown on request.
    m_showAll->setObjectName(QStringLiteral("chkShowAllTags"));
    m_showAll->setToolTip(tr("Also show the tags that change because the photo is written, "
                             "besides those you asked to change"));
    m_showAll->setEnabled(false);
    connect(m_showAll, &QCheckBox::toggled, this, &ReviewChangesWindow::fillTable);
    m_summary->setWordWrap(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_summary, 1);
    buttons->addWidget(m_showAll);
    buttons->addWidget(close);
    buttons->addWidget(m_start);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 14);
    layout->addWidget(title);
    layout->addWidget(note);
    layout->addWidget(m_table, 1);
    layout->addLayout(buttons);
    resize(980, 580);

    connect(&m_watcher, &QFutureWatcher<QList<PhotoChanges>>::finished, this,
            &ReviewChangesWindow::showPlan);
    m_watcher.setFuture(QtConcurrent::run([values, photos = std::move(photos), firstNumber] {
        const PhotoPipeline pipeline(values);
        return planChanges(pipeline, ListPhotoSource(photos), firstNumber);
    }));
}

ReviewChangesWindow::~ReviewChangesWindow() {
    m_watcher.waitForFinished();
}

void ReviewChangesWindow::addRow(const QString& photo, const QString& what, const QString& now,
                                 const QString& after, bool problem) {
    const int row = m_table->rowCount();
    m_table->insertRow(row);
    const QString texts[] = {photo, what, now, after};
    for (int column = 0; column < 4; ++column) {
        auto* item = new QTableWidgetItem(texts[column]);
        item->setToolTip(texts[column]);
        if (problem)
            item->setForeground(palette().color(QPalette::PlaceholderText));
        if (column == 0) {
            QFont bold = item->font();
            bold.setBold(true);
            item->setFont(bold);
        }
        m_table->setItem(row, column, item);
    }
}

void ReviewChangesWindow::showPlan() {
    m_plan = m_watcher.result();
    fillTable();
    int written = 0;
    int tags = 0;
    for (const PhotoChanges& photo : std::as_const(m_plan)) {
        if (!isCounted(photo.outcome))
            continue;
        ++written;
        if (photo.reason.isEmpty())
            tags += int(photo.changes.size());
    }
    m_summary->setText(tr("Would be written: %1 of %2 photos. Skipped: %3. Tag changes: %4.")
                           .arg(QLocale().toString(written), QLocale().toString(m_plan.size()),
                                QLocale().toString(m_plan.size() - written),
                                QLocale().toString(tags)));
    m_showAll->setEnabled(true);
    m_start->setEnabled(true);
    m_ready = true;
    emit ready();
}

void ReviewChangesWindow::fillTable() {
    m_table->setRowCount(0);
    const std::optional<QSet<QString>> asked = m_showAll->isChecked() ? std::nullopt : m_asked;
    for (const PhotoChanges& photo : std::as_const(m_plan)) {
        const QString name = fileName(photo.sourcePath);
        QString shown = name;
        const auto next = [&shown] {
            const QString text = shown;
            shown.clear();
            return text;
        };
        if (!isCounted(photo.outcome)) {
            addRow(next(), tr("Skipped"), QString(), photo.reason, true);
            continue;
        }
        if (photo.isRenamed())
            addRow(next(), tr("New name"), name, fileName(photo.finalPath), false);
        if (!photo.reason.isEmpty()) {
            addRow(next(), tr("Not changed"), QString(), photo.reason, true);
            continue;
        }
        int hidden = 0;
        for (const TagChange& change : photo.changes) {
            if (isAsked(change, asked))
                addRow(next(), change.key, TagChange::describe(change.before),
                       TagChange::describe(change.after), false);
            else
                ++hidden;
        }
        if (hidden > 0)
            addRow(next(), tr("Other tags"), QString(),
                   hidden == 1 ? tr("1 more tag changes as the photo is written")
                               : tr("%1 more tags change as the photo is written").arg(hidden),
                   true);
        if (photo.changes.isEmpty() && !photo.isRenamed())
            addRow(next(), tr("No change"), QString(), QString(), true);
    }
    m_table->resizeColumnsToContents();
    // The photo and the tag keep to their width; the two values share the rest.
    const int widest[] = {180, 250, 230};
    for (int column = 0; column < 3; ++column)
        m_table->setColumnWidth(column, std::min(m_table->columnWidth(column), widest[column]));
}

} // namespace tagmoor
