#include "app/widgets/FilePanel.h"

#include "app/widgets/PanelEnableFilter.h"
#include "foundation/Settings.h"

#include <QAbstractItemView>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QTreeView>

namespace tagmoor {

namespace {

// The application's settings, while it runs; panels opened without it remember nothing.
Settings* g_folderMemory = nullptr;

QLineEdit* nameField(const QFileDialog* panel) {
    return panel->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
}

} // namespace

void FilePanel::rememberFoldersIn(Settings* settings) {
    g_folderMemory = settings;
}

void FilePanel::forgetFolders(const Settings* settings) {
    if (g_folderMemory == settings)
        g_folderMemory = nullptr;
}

bool FilePanel::needsOwnDialog(const OpenPanelRequest& request) {
    // A desktop's chooser takes files or folders, not both; it has no place for a message or
    // an extra button, and it hides what a filter leaves out instead of greying it.
    return (request.canChooseFiles && request.canChooseDirectories) || !request.message.isEmpty() ||
           !request.onlyEnabledFolder.isEmpty() || !request.accessoryButton.isEmpty() ||
           !request.allowedExtensions.isEmpty();
}

QString FilePanel::startFolder(const OpenPanelRequest& request,
                               const std::optional<QString>& remembered) {
    if (!request.directory.isEmpty())
        return request.directory;
    if (remembered && !remembered->isEmpty() && QFileInfo(*remembered).isDir())
        return *remembered;
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    if (!pictures.isEmpty() && QFileInfo(pictures).isDir())
        return pictures;
    return QDir::homePath();
}

FilePanel::FilePanel(QWidget* parent, const OpenPanelRequest& request)
    : QFileDialog(parent),
      m_filesAndFolders(request.canChooseFiles && request.canChooseDirectories),
      m_remembers(request.directory.isEmpty()) {
    setOption(QFileDialog::DontUseNativeDialog, needsOwnDialog(request));
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
    if (!request.prompt.isEmpty()) {
        setWindowTitle(request.prompt);
        setLabelText(QFileDialog::Accept, request.prompt);
    }
    setDirectory(startFolder(request, g_folderMemory ? g_folderMemory->lastPanelFolder()
                                                     : std::optional<QString>()));
    setOption(QFileDialog::ReadOnly, !request.canCreateDirectories);
    if (testOption(QFileDialog::DontUseNativeDialog))
        setUpOwnDialog(request);
}

void FilePanel::setUpOwnDialog(const OpenPanelRequest& request) {
    // A dialog, not a document window: no grip in its corner.
    setSizeGripEnabled(false);
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
    if (QLineEdit* name = nameField(this))
        connect(name, &QLineEdit::textEdited, this, [this](const QString& t) { m_typedName = t; });
    if (!request.message.isEmpty())
        addMessage(request.message);
    if (!request.accessoryButton.isEmpty())
        addAccessory(request.accessoryButton);
}

void FilePanel::addAccessory(const QString& title) {
    m_accessory = new QPushButton(title, this);
    m_accessory->setObjectName(QStringLiteral("btnAccessory"));
    if (auto* grid = qobject_cast<QGridLayout*>(layout()))
        grid->addWidget(m_accessory, grid->rowCount(), 0, 1, grid->columnCount(), Qt::AlignHCenter);
    connect(m_accessory, &QPushButton::clicked, this, [this] {
        m_accessoryClicked = true;
        m_chosen.clear();
        QDialog::reject();
    });
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

QString FilePanel::typedFolder() const {
    // In a folder chooser the name field names the folder to choose: Enter takes it.
    const QLineEdit* name = nameField(this);
    if (!name || fileMode() == QFileDialog::Directory)
        return {};
    const QString text = name->text().trimmed();
    // Several quoted names are a choice, and so is a name the dialog filled in from the list.
    if (text.isEmpty() || text.startsWith(QLatin1Char('"')))
        return {};
    if (!name->hasFocus() && text != m_typedName.trimmed())
        return {};
    QString path = text;
    if (path == QLatin1String("~") || path.startsWith(QLatin1String("~/")))
        path = QDir::homePath() + path.mid(1);
    const QString shown = directory().absolutePath();
    const QFileInfo info(QDir(shown).absoluteFilePath(path));
    if (!info.isDir())
        return {};
    return info.absoluteFilePath();
}

void FilePanel::accept() {
    // A folder's path typed and Enter in a panel of photos: the panel goes there, as a file
    // manager's location does, instead of taking the folder with all it holds. The path of
    // the folder shown leaves the panel where it is.
    if (const QString folder = typedFolder(); !folder.isEmpty()) {
        setDirectory(folder);
        if (QLineEdit* name = nameField(this))
            name->clear();
        m_typedName.clear();
        // Typing a path selects the entries it passes on the way; none of them was chosen.
        for (QAbstractItemView* view : findChildren<QAbstractItemView*>())
            if (view->selectionModel())
                view->selectionModel()->clearSelection();
        return;
    }
    // A panel limited to one folder takes that folder only, picked or entered.
    if (!m_onlyFolder.isEmpty()) {
        const QStringList picked = selectedFiles();
        if (picked.size() != 1 || QFileInfo(picked.first()).canonicalFilePath() != m_onlyFolder)
            return;
    }
    if (!m_filesAndFolders) {
        QFileDialog::accept();
        if (result() == QDialog::Accepted)
            finish(selectedFiles());
        return;
    }
    acceptFilesAndFolders();
}

void FilePanel::acceptFilesAndFolders() {
    const QLineEdit* name = nameField(this);
    if (name && name->text().trimmed().isEmpty())
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
        QMessageBox::warning(this, windowTitle(),
                             tr("No photo or folder named \"%1\" is in this folder.")
                                 .arg(name ? name->text().trimmed() : QString()));
        return;
    }
    finish(chosen);
    QDialog::accept();
}

void FilePanel::finish(const QStringList& chosen) {
    m_chosen = chosen;
    if (g_folderMemory && m_remembers)
        g_folderMemory->setLastPanelFolder(directory().absolutePath());
}

} // namespace tagmoor
