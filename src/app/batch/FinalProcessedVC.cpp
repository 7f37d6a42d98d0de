#include "app/batch/FinalProcessedVC.h"

#include "batch/BatchController.h"
#include "batch/BatchSummary.h"

#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QTableWidget>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

namespace tagmoor {

namespace {

// How long the finished progress stays before the result is shown.
constexpr int kResultDelayMs = 1000;

QLabel* named(const char* name, const QString& text = {}) {
    auto* label = new QLabel(text);
    label->setObjectName(QString::fromLatin1(name));
    return label;
}

QLabel* heading(const char* name, const QString& text, double scale) {
    QLabel* label = named(name, text);
    QFont font = label->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * scale);
    label->setFont(font);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

} // namespace

FinalProcessedVC::FinalProcessedVC(BatchController& controller, QWidget* parent)
    : QDialog(parent), m_controller(controller), m_views(new QStackedWidget),
      m_progress(new QProgressBar), m_path(named("lblPath")),
      m_count(named("lblValueImageProcessed")), m_stop(new QPushButton(tr("Stop"))),
      m_completed(heading("lblBatchProcessCompleted", {}, 1.3)),
      m_batchCount(named("lblValueBatchCount")), m_processed(named("lblValueImagesProcessed")),
      m_skipped(named("lblValuePhotosSkipped")), m_outputDirectory(new QPushButton),
      m_saved(heading("lblPhotosSavedSuccessfully", {}, 1.0)), m_problems(named("lblProblems")),
      m_notReached(named("lblNotReached")), m_showProblems(new QPushButton(tr("Show List..."))),
      m_finish(new QPushButton(tr("Finish"))), m_resultDelay(new QTimer(this)) {
    setObjectName(QStringLiteral("FinalProcessedVC"));
    setWindowTitle(tr("Processing"));
    setWindowModality(Qt::WindowModal);
    setMinimumWidth(520);
    m_resultDelay->setSingleShot(true);
    m_resultDelay->setInterval(kResultDelayMs);
    connect(m_resultDelay, &QTimer::timeout, this, &FinalProcessedVC::hideBoxProcessing);
    m_views->addWidget(makeProcessingView());
    m_views->addWidget(makeResultView());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->addWidget(m_views);

    connect(&m_controller, &BatchController::progress, this, &FinalProcessedVC::showProgress);
    connect(&m_controller, &BatchController::finished, this, &FinalProcessedVC::showResult);
    connect(m_stop, &QPushButton::clicked, &m_controller, &BatchController::clickedStop);
    connect(m_finish, &QPushButton::clicked, this, &FinalProcessedVC::finishClicked);
    connect(m_showProblems, &QPushButton::clicked, this, &FinalProcessedVC::showProblemList);
    connect(m_outputDirectory, &QPushButton::clicked, this, [this] {
        if (!m_outputPath.isEmpty())
            QDesktopServices::openUrl(QUrl::fromLocalFile(m_outputPath));
    });
}

QWidget* FinalProcessedVC::makeProcessingView() {
    auto* view = new QWidget;
    view->setObjectName(QStringLiteral("boxProcessing"));
    m_progress->setObjectName(QStringLiteral("progressView"));
    m_progress->setRange(0, 1000);
    m_progress->setTextVisible(false);
    m_path->setWordWrap(true);
    m_path->setForegroundRole(QPalette::PlaceholderText);
    m_stop->setObjectName(QStringLiteral("btnStop"));
    auto* countRow = new QHBoxLayout;
    countRow->addWidget(named("lblImageProcessed", tr("Images processed:")));
    countRow->addWidget(m_count);
    countRow->addStretch(1);
    countRow->addWidget(m_stop);
    auto* layout = new QVBoxLayout(view);
    layout->setSpacing(10);
    layout->addWidget(heading("lblHeaderTitleMessage", tr("Processing Images"), 1.3));
    layout->addWidget(named("lblExifEditingProcessingSummary",
                            tr("Please wait while the metadata of the selected photos is "
                               "written.")));
    layout->addWidget(m_progress);
    layout->addWidget(m_path);
    layout->addLayout(countRow);
    return view;
}

QWidget* FinalProcessedVC::makeResultView() {
    auto* view = new QWidget;
    view->setObjectName(QStringLiteral("boxResult"));
    m_outputDirectory->setObjectName(QStringLiteral("btnOutputDirectory"));
    m_outputDirectory->setFlat(true);
    m_outputDirectory->setCursor(Qt::PointingHandCursor);
    m_finish->setObjectName(QStringLiteral("btnFinish"));
    m_finish->setDefault(true);
    m_showProblems->setObjectName(QStringLiteral("btnShowProblems"));
    auto* facts = new QFormLayout;
    facts->setLabelAlignment(Qt::AlignRight);
    facts->addRow(named("lblBatchCount", tr("Batch Count")), m_batchCount);
    facts->addRow(named("lblImagesProcessed", tr("Images Processed")), m_processed);
    facts->addRow(named("lblPhotosSkipped", tr("Photos Skipped")), m_skipped);
    facts->addRow(named("lblOutputDirectory", tr("Output Directory")), m_outputDirectory);
    auto* notes = new QVBoxLayout;
    notes->addWidget(m_problems);
    notes->addWidget(m_notReached);
    auto* problems = new QHBoxLayout;
    problems->addLayout(notes, 1);
    problems->addWidget(m_showProblems);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_finish);
    auto* layout = new QVBoxLayout(view);
    layout->setSpacing(10);
    layout->addWidget(m_completed);
    layout->addWidget(m_saved);
    layout->addLayout(facts);
    layout->addLayout(problems);
    layout->addLayout(buttons);
    return view;
}

void FinalProcessedVC::startRun(const RunValues& values,
                                const QList<CGImageProperties>& workingImages, int threads) {
    m_resultDelay->stop();
    m_views->setCurrentIndex(0);
    m_progress->setValue(0);
    m_stop->setEnabled(true);
    m_path->clear();
    m_count->clear();
    m_controller.start(values, workingImages, threads);
}

void FinalProcessedVC::showProgress(int processed, int total, const QString& path) {
    m_count->setText(
        QStringLiteral("%1 / %2").arg(QLocale().toString(processed), QLocale().toString(total)));
    m_path->setText(path);
    m_progress->setValue(total > 0 ? processed * 1000 / total : 0);
}

bool FinalProcessedVC::isShowingResult() const {
    return m_views->currentIndex() == 1;
}

void FinalProcessedVC::showResult(const BatchResult& result) {
    const BatchSummary summary = BatchSummary::of(result);
    m_count->setText(summary.lblValueImageProcessed);
    m_progress->setValue(1000);
    m_stop->setEnabled(false);
    m_completed->setText(summary.lblBatchProcessCompleted);
    m_batchCount->setText(summary.lblValueBatchCount);
    m_processed->setText(summary.lblValueImagesProcessed);
    m_skipped->setText(summary.lblValuePhotosSkipped);
    m_saved->setText(summary.lblPhotosSavedSuccessfully);
    m_outputDirectory->setText(summary.outputDirectoryTitle);
    m_outputDirectory->setToolTip(summary.outputDirectoryValue);
    m_outputDirectory->setEnabled(summary.outputDirectoryEnabled);
    m_outputPath = summary.outputDirectoryEnabled ? summary.outputDirectoryValue : QString();
    // On top of the counts: the photos that did not get everything that was asked, and apart
    // from them those that a stop kept from being reached.
    m_problemList = result.problems;
    m_notReachedList = result.notReached;
    const int n = int(m_problemList.size());
    m_problems->setText(n == 1 ? tr("1 photo could not be changed")
                               : tr("%1 photos could not be changed").arg(QLocale().toString(n)));
    m_problems->setVisible(n > 0);
    m_notReached->setText(summary.lblNotReached);
    m_notReached->setVisible(!m_notReachedList.isEmpty());
    m_showProblems->setVisible(n > 0 || !m_notReachedList.isEmpty());
    // The full bar stays a moment before the result takes its place.
    m_resultDelay->start();
}

void FinalProcessedVC::hideBoxProcessing() {
    m_views->setCurrentIndex(1);
    m_finish->setFocus();
}

void FinalProcessedVC::showProblemList() {
    QDialog list(this);
    list.setObjectName(QStringLiteral("problemList"));
    list.setWindowTitle(m_problemList.isEmpty() ? m_notReached->text() : m_problems->text());
    // The photos that failed first, each with its reason; then those not reached.
    const int failed = int(m_problemList.size());
    auto* table = new QTableWidget(failed + int(m_notReachedList.size()), 2);
    table->setHorizontalHeaderLabels({tr("Photo"), tr("Reason")});
    const auto addRow = [&](int row, const QString& path, const QString& reason) {
        auto* photo = new QTableWidgetItem(QFileInfo(path).fileName());
        photo->setToolTip(path);
        table->setItem(row, 0, photo);
        table->setItem(row, 1, new QTableWidgetItem(reason));
    };
    for (int i = 0; i < failed; ++i)
        addRow(i, m_problemList[i].path, m_problemList[i].reason);
    for (int i = 0; i < m_notReachedList.size(); ++i)
        addRow(failed + i, m_notReachedList[i], tr("Not reached: the run was stopped"));
    table->horizontalHeader()->setStretchLastSection(true);
    table->verticalHeader()->hide();
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->resizeColumnToContents(0);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, &list, &QDialog::reject);
    auto* layout = new QVBoxLayout(&list);
    layout->addWidget(table);
    layout->addWidget(buttons);
    list.resize(640, 360);
    list.exec();
}

void FinalProcessedVC::reject() {
    if (isShowingResult())
        emit finishClicked();
}

} // namespace tagmoor
