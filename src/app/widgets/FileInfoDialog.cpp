#include "app/widgets/FileInfoDialog.h"

#include "workingset/FileSizeText.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QMimeDatabase>
#include <QVBoxLayout>

namespace tagmoor {

FileInfoDialog::Facts FileInfoDialog::fileFacts(const QString& path) {
    const QFileInfo info(path);
    const QLocale locale;
    Facts facts;
    facts.append({tr("Name"), info.fileName()});
    facts.append({tr("Kind"), QMimeDatabase().mimeTypeForFile(info).comment()});
    // The same size text as the list and the preview, with the exact count beside it.
    facts.append(
        {tr("Size"), tr("%1 (%2 bytes)")
                         .arg(fileSizeText(std::uint64_t(std::max<qint64>(0, info.size()))))
                         .arg(locale.toString(info.size()))});
    facts.append({tr("Where"), info.absolutePath()});
    const QDateTime born = info.birthTime();
    if (born.isValid())
        facts.append({tr("Created"), locale.toString(born, QLocale::LongFormat)});
    facts.append({tr("Modified"), locale.toString(info.lastModified(), QLocale::LongFormat)});
    facts.append({tr("Permissions"), info.isWritable() ? tr("Read and write") : tr("Read only")});
    return facts;
}

FileInfoDialog::FileInfoDialog(const QString& path, const Facts& extraFacts, QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("GetInfo"));
    setWindowTitle(tr("%1 Info").arg(QFileInfo(path).fileName()));
    auto* form = new QFormLayout;
    form->setLabelAlignment(Qt::AlignRight);
    form->setHorizontalSpacing(12);
    for (const auto& [label, value] : fileFacts(path) + extraFacts) {
        auto* text = new QLabel(value);
        text->setTextInteractionFlags(Qt::TextSelectableByMouse);
        text->setWordWrap(true);
        text->setMinimumWidth(260);
        form->addRow(label + QLatin1Char(':'), text);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

} // namespace tagmoor
