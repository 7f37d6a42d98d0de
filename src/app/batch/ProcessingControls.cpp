#include "app/batch/ProcessingControls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace tagmoor {

ProcessingControls::ProcessingControls(ProcessingOptions& options, QObject* parent)
    : QObject(parent), m_options(options), m_popup(new QComboBox), m_cleanBox(new QWidget) {
    m_popup->setObjectName(QStringLiteral("btnPopUpChooseEditingOptions"));
    m_popup->addItems({tr("Edit metadata, keep the other tags"),
                       tr("Edit metadata, clear the other tags"), tr("Remove metadata groups")});
    connect(m_popup, &QComboBox::activated, this, &ProcessingControls::clickedChooseEditingOptions);

    m_cleanBox->setObjectName(QStringLiteral("boxCleanMetadataInfo"));
    auto* layout = new QVBoxLayout(m_cleanBox);
    layout->setContentsMargins(4, 8, 4, 8);
    auto* title = new QLabel(tr("Remove these metadata groups from the marked photos:"));
    title->setWordWrap(true);
    layout->addWidget(title);
    struct BoxRow {
        ProcessingOptions::Box box;
        const char* name;
        const char* text;
        int indent;
    };
    const BoxRow rows[] = {
        {ProcessingOptions::Box::Exif, "btnExifCleanMetadata", QT_TR_NOOP("EXIF (all of it)"), 0},
        {ProcessingOptions::Box::Gps, "btnGPSInfoCleanMetadata", QT_TR_NOOP("GPS information"), 20},
        {ProcessingOptions::Box::Comment, "btnCommentCleanMetadata", QT_TR_NOOP("User comment"),
         20},
        {ProcessingOptions::Box::Iptc, "btnIPTCCleanMetadata", QT_TR_NOOP("IPTC"), 0},
        {ProcessingOptions::Box::Xmp, "btnXMPDataCleanMetadata", QT_TR_NOOP("XMP"), 0},
    };
    for (const BoxRow& row : rows) {
        auto* box = new QCheckBox(tr(row.text));
        box->setObjectName(QString::fromLatin1(row.name));
        box->setStyleSheet(QStringLiteral("margin-left: %1px;").arg(row.indent));
        m_boxes[int(row.box)] = box;
        layout->addWidget(box);
        connect(box, &QCheckBox::clicked, this, [this, b = row.box](bool on) {
            m_options.clickBox(b, on);
            refresh();
            emit startEnabledChanged(m_options.startEnabled());
        });
    }
    layout->addStretch(1);
    refresh();
}

void ProcessingControls::clickedChooseEditingOptions(int row) {
    m_options.chooseRow(row);
    refresh();
    emit modeChanged(m_options.mode());
    emit startEnabledChanged(m_options.startEnabled());
}

void ProcessingControls::refresh() {
    {
        const QSignalBlocker block(m_popup);
        m_popup->setCurrentIndex(m_options.row());
    }
    for (int i = 0; i < 5; ++i)
        m_boxes[i]->setChecked(m_options.shows(ProcessingOptions::Box(i)));
    m_cleanBox->setVisible(m_options.isRemoveGroups());
}

} // namespace tagmoor
