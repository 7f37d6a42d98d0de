#include "app/widgets/FilePanel.h"

#include "app/widgets/PanelEnableFilter.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTreeView>

namespace tagmoor {

FilePanel::FilePanel(QWidget* parent, const OpenPanelRequest& request)
    : QFileDialog(parent),
      m_filesAndFolders(request.canChooseFiles && request.canChooseDirectories) {
    setOption(QFileDialog::DontUseNativeDialog);
    setWindowModality(Qt::WindowModal);
    if (!request.canChooseFiles) {
        setFileMode(QFileDialog::Directory);
        setOption(QFileDialog::ShowDirsOnly);
    } else {
        setFileMode(request.allowsMultipleSelection ? QFileDialog::ExistingFiles
                                                    : QFileDialog::ExistingFile);
    }
    QDir::Filters entries = QDir::AllEntries | QDir::NoDotAndDotDot | QDir::AllDirs;
    if (request.showsHiddenFiles)
        entries |= QDir::Hidden;
    setFilter(entries);
    auto* filter = new PanelEnableFilter(request.allowedExtensions, request.canChooseFiles, this);
    filter->setOnlyEnabledFolder(request.onlyEnabledFolder);
    setProxyModel(filter);
    if (!request.onlyEnabledFolder.isEmpty())
        m_onlyFolder = QFileInfo(request.onlyEnabledFolder).canonicalFilePath();
    if (request.canChooseFiles && !request.allowedExtensions.isEmpty())
        setNameFilter(tr("Supported photos and folders (*)"));
    // The name takes the room; size, type and date keep what they need.
    if (auto* details = findChild<QTreeView*>(QStringLiteral("treeView"))) {
        QHeaderView* header = details->header();
        header->setStretchLastSection(false);
        header->setSectionResizeMode(0, QHeaderView::Stretch);
        for (int column = 1; column < 4; ++column)
            header->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    }
    if (!request.prompt.isEmpty()) {
        setWindowTitle(request.prompt);
        setLabelText(QFileDialog::Accept, request.prompt);
    }
    if (!request.directory.isEmpty())
        setDirectory(request.directory);
    if (!request.message.isEmpty())
        addMessage(request.message);
    setOption(QFileDialog::ReadOnly, !request.canCreateDirectories);
    if (!request.accessoryButton.isEmpty()) {
        m_accessory = new QPushButton(request.accessoryButton, this);
        m_accessory->setObjectName(QStringLiteral("btnAccessory"));
        if (auto* grid = qobject_cast<QGridLayout*>(layout()))
            grid->addWidget(m_accessory, grid->rowCount(), 0, 1, grid->columnCount(),
                            Qt::AlignHCenter);
        connect(m_accessory, &QPushButton::clicked, this, [this] {
            m_accessoryClicked = true;
            m_chosen.clear();
            QDialog::reject();
        });
    }
}

void FilePanel::addMessage(const QString& text) {
    auto* grid = qobject_cast<QGridLayout*>(layout());
    if (!grid)
        return;
    auto* message = new QLabel(text, this);
    message->setObjectName(QStringLiteral("panelMessage"));
    message->setWordWrap(true);
    // Above everything else: the grid's rows move down by one.
    QList<std::tuple<QLayoutItem*, int, int, int, int>> items;
    while (grid->count() > 0) {
        int row, column, rowSpan, columnSpan;
        grid->getItemPosition(0, &row, &column, &rowSpan, &columnSpan);
        items.append({grid->takeAt(0), row, column, rowSpan, columnSpan});
    }
    grid->addWidget(message, 0, 0, 1, std::max(grid->columnCount(), 1));
    for (const auto& [item, row, column, rowSpan, columnSpan] : items)
        grid->addItem(item, row + 1, column, rowSpan, columnSpan);
}

void FilePanel::accept() {
    // A panel limited to one folder takes that folder only, typed or picked.
    if (!m_onlyFolder.isEmpty()) {
        const QStringList picked = selectedFiles();
        if (picked.size() != 1 || QFileInfo(picked.first()).canonicalFilePath() != m_onlyFolder)
            return;
    }
    if (!m_filesAndFolders) {
        QFileDialog::accept();
        m_chosen = selectedFiles();
        return;
    }
    const auto* nameEdit = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    if (nameEdit && nameEdit->text().trimmed().isEmpty())
        return;
    // A typed name that matches nothing (a stray quote, say) makes the dialog hand back the
    // folder it is showing; that folder was never chosen, and adding it would add everything
    // below it.
    const QString shown = QFileInfo(directory().absolutePath()).canonicalFilePath();
    QStringList chosen;
    for (const QString& path : selectedFiles()) {
        const QFileInfo info(path);
        if (info.exists() && info.canonicalFilePath() != shown)
            chosen.append(path);
    }
    if (chosen.isEmpty()) {
        QMessageBox::information(this, windowTitle(),
                                 tr("No photo or folder named \"%1\" is in this folder.")
                                     .arg(nameEdit ? nameEdit->text().trimmed() : QString()));
        return;
    }
    m_chosen = chosen;
    QDialog::accept();
}

} // namespace tagmoor
