#include "app/photolibrary/AlbumChooser.h"

#include "foundation/UserPrompt.h"
#include "photolibrary/PhotoLibraryReader.h"
#include "workingset/ScanController.h"
#include "workingset/SupportedExtensions.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QStackedWidget>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <QtConcurrent>

namespace tagmoor {

namespace {

QLabel* heading(const QString& text) {
    auto* label = new QLabel(text);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

// OK and Cancel at the bottom right, OK the default.
QHBoxLayout* buttonRow(QPushButton* ok, QPushButton* cancel) {
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(cancel);
    row->addWidget(ok);
    ok->setDefault(true);
    return row;
}

template <typename T, typename Done>
void runInBackground(QObject* context, std::function<T()> work, Done done) {
    auto* watcher = new QFutureWatcher<T>(context);
    QObject::connect(watcher, &QFutureWatcher<T>::finished, context, [watcher, done] {
        done(watcher->result());
        watcher->deleteLater();
    });
    watcher->setFuture(QtConcurrent::run(std::move(work)));
}

} // namespace

AlbumChooser::AlbumChooser(ScanController& scans, UserPrompt& prompt, PanelScreen screen,
                           QWidget* parent)
    : QFrame(parent, Qt::Popup), m_scans(scans), m_prompt(prompt), m_screen(screen),
      m_faces(new QStackedWidget), m_foldersAndPhotos(new QRadioButton),
      m_photosLibrary(new QRadioButton), m_entireLibrary(new QRadioButton),
      m_chosenAlbums(new QRadioButton), m_okHome(new QPushButton(tr("OK"))),
      m_okAddFiles(new QPushButton(tr("OK"))), m_okAlbumList(new QPushButton(tr("OK"))),
      m_allAlbums(new QCheckBox(tr("All Albums"))), m_list(new QListWidget), m_title(new QLabel),
      m_status(new QLabel) {
    setObjectName(QStringLiteral("AddAlbumsPhotosLibrary"));
    setFrameShape(QFrame::StyledPanel);
    m_faces->addWidget(makeHomeFace());
    m_faces->addWidget(makeAddFilesFace());
    m_faces->addWidget(makeAlbumListFace());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_faces);
}

AlbumChooser::~AlbumChooser() = default;

QWidget* AlbumChooser::makeHomeFace() {
    auto* box = new QWidget;
    box->setObjectName(QStringLiteral("boxHomeVC"));
    m_foldersAndPhotos->setObjectName(QStringLiteral("btnAddFoldersnPhotosHomeVC"));
    m_foldersAndPhotos->setText(tr("Folders and photos"));
    m_photosLibrary->setObjectName(QStringLiteral("btnAddPhotosLibHomeVC"));
    m_photosLibrary->setText(tr("A photo library"));
    m_foldersAndPhotos->setChecked(true);
    auto* group = new QButtonGroup(box);
    group->addButton(m_foldersAndPhotos);
    group->addButton(m_photosLibrary);
    m_okHome->setObjectName(QStringLiteral("btnOkHomeVC"));
    auto* cancel = new QPushButton(tr("Cancel"));
    cancel->setObjectName(QStringLiteral("btnCancel"));
    connect(m_okHome, &QPushButton::clicked, this, &AlbumChooser::clickedOkHomeVC);
    connect(cancel, &QPushButton::clicked, this, &AlbumChooser::clickedCancel);

    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(16, 14, 16, 12);
    layout->addWidget(heading(tr("Add more from")));
    layout->addWidget(m_foldersAndPhotos);
    layout->addWidget(m_photosLibrary);
    layout->addStretch(1);
    layout->addSpacing(10);
    layout->addLayout(buttonRow(m_okHome, cancel));
    return box;
}

QWidget* AlbumChooser::makeAddFilesFace() {
    auto* box = new QWidget;
    box->setObjectName(QStringLiteral("boxAddFilesVC"));
    m_entireLibrary->setObjectName(QStringLiteral("btnAddEntireLibAddFilesVC"));
    m_entireLibrary->setText(tr("The entire library"));
    m_chosenAlbums->setObjectName(QStringLiteral("btnAddAblumsAddFilesVC"));
    m_chosenAlbums->setText(tr("Albums I choose"));
    m_entireLibrary->setChecked(true);
    auto* group = new QButtonGroup(box);
    group->addButton(m_entireLibrary);
    group->addButton(m_chosenAlbums);
    m_okAddFiles->setObjectName(QStringLiteral("btnOkAddFilesVC"));
    auto* cancel = new QPushButton(tr("Cancel"));
    cancel->setObjectName(QStringLiteral("btnCancelAddFilesVC"));
    connect(m_okAddFiles, &QPushButton::clicked, this, &AlbumChooser::clickedOKAddFilesVC);
    connect(cancel, &QPushButton::clicked, this, &AlbumChooser::clickedCancel);

    auto* hint = new QLabel(tr("A photo library package, a digiKam collection or a "
                               "Shotwell library."));
    hint->setWordWrap(true);
    hint->setForegroundRole(QPalette::PlaceholderText);
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(16, 14, 16, 12);
    layout->addWidget(heading(tr("Add from a photo library")));
    layout->addWidget(m_entireLibrary);
    layout->addWidget(m_chosenAlbums);
    layout->addWidget(hint);
    layout->addStretch(1);
    layout->addSpacing(10);
    layout->addLayout(buttonRow(m_okAddFiles, cancel));
    return box;
}

QWidget* AlbumChooser::makeAlbumListFace() {
    auto* box = new QWidget;
    box->setObjectName(QStringLiteral("boxAlbumList"));
    m_title->setObjectName(QStringLiteral("lblTitlePhotoLibAlbumList"));
    QFont font = m_title->font();
    font.setBold(true);
    m_title->setFont(font);
    m_title->setTextFormat(Qt::PlainText);
    m_status->setObjectName(QStringLiteral("lblAlbumListStatus"));
    m_status->setWordWrap(true);
    m_status->setAlignment(Qt::AlignCenter);
    m_status->setForegroundRole(QPalette::PlaceholderText);
    m_allAlbums->setObjectName(QStringLiteral("btnAllAlbumsList"));
    m_list->setObjectName(QStringLiteral("tableView"));
    m_list->setAccessibleName(tr("Albums"));
    m_list->setAlternatingRowColors(true);
    m_list->setUniformItemSizes(true);
    m_list->setSpacing(1);
    m_okAlbumList->setObjectName(QStringLiteral("btnOKAlbumList"));
    auto* cancel = new QPushButton(tr("Cancel"));
    cancel->setObjectName(QStringLiteral("btnCancelAlbumList"));
    connect(m_allAlbums, &QCheckBox::clicked, this, &AlbumChooser::clickedAllAlbumList);
    connect(m_list, &QListWidget::itemChanged, this, &AlbumChooser::onItemChanged);
    connect(m_okAlbumList, &QPushButton::clicked, this, &AlbumChooser::clickedOKAlbumList);
    connect(cancel, &QPushButton::clicked, this, &AlbumChooser::clickedCancel);

    auto* stack = new QVBoxLayout;
    stack->addWidget(m_list, 1);
    stack->addWidget(m_status);
    auto* bottom = buttonRow(m_okAlbumList, cancel);
    bottom->insertWidget(0, m_allAlbums);
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(16, 14, 16, 12);
    layout->addWidget(m_title);
    layout->addLayout(stack, 1);
    layout->addLayout(bottom);
    return box;
}

void AlbumChooser::setFace(Face face) {
    m_face = face;
    m_faces->setCurrentIndex(int(face));
    if (face == Face::AlbumList) {
        setFixedSize(420, 320);
        return;
    }
    // The two choice faces take the height their texts need.
    const QSize hint = m_faces->currentWidget()->sizeHint();
    setFixedSize(std::max(270, hint.width()), hint.height());
}

void AlbumChooser::popUpBelow(QWidget* anchor) {
    m_anchor = anchor;
    if (anchor) {
        QPoint at = anchor->mapToGlobal(QPoint(0, anchor->height() + 4));
        if (const QScreen* screen = anchor->screen()) {
            const QRect area = screen->availableGeometry();
            at.setX(std::clamp(at.x(), area.left(), std::max(area.left(), area.right() - width())));
            at.setY(std::clamp(at.y(), area.top(), std::max(area.top(), area.bottom() - height())));
        }
        move(at);
    }
    show();
    raise();
}

void AlbumChooser::showHomeFace(QWidget* anchor) {
    setFace(Face::Home);
    m_foldersAndPhotos->setChecked(true);
    popUpBelow(anchor);
}

void AlbumChooser::showAddFilesFace(QWidget* anchor) {
    setFace(Face::AddFiles);
    popUpBelow(anchor);
}

void AlbumChooser::clickedOkHomeVC() {
    if (m_foldersAndPhotos->isChecked()) {
        hide();
        emit addFoldersChosen();
        return;
    }
    showAddFilesFace(m_anchor);
}

QString AlbumChooser::chooseLibrary(const QString& prompt, const QString& message) {
    OpenPanelRequest request;
    request.prompt = prompt;
    request.message = message;
    request.canChooseFiles = true;
    request.canChooseDirectories = true;
    request.allowsMultipleSelection = false;
    request.allowedExtensions = {QStringLiteral("photoslibrary"), QStringLiteral("db")};
    request.directory = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const QStringList chosen = m_prompt.openPanel(request);
    return chosen.isEmpty() ? QString() : chosen.first();
}

void AlbumChooser::clickedOKAddFilesVC() {
    hide();
    if (m_entireLibrary->isChecked()) {
        const QString path = chooseLibrary(tr("Add Photos Library"));
        if (path.isEmpty())
            return;
        // A package goes through the scan like any staged item; a manager's database is
        // read here and its originals are handed to the scan.
        if (isPhotoLibraryPackage(path))
            m_scans.addFromPanel(m_screen, {path});
        else
            readEntireLibrary(path);
        return;
    }
    const QString path = chooseLibrary(tr("Select Photos Library"),
                                       tr("Select Photos Library to choose specific albums from"));
    if (!path.isEmpty())
        showAlbumList(path, m_anchor);
}

void AlbumChooser::readEntireLibrary(const QString& path) {
    m_reader = std::make_shared<PhotoLibraryReader>(path);
    m_busy = true;
    std::function<LibraryRead()> work = [reader = m_reader] { return reader->readAll(); };
    runInBackground<LibraryRead>(this, work, [this](const LibraryRead& read) {
        m_busy = false;
        handOver(read);
    });
}

void AlbumChooser::handOver(const LibraryRead& read) {
    if (read.items.isEmpty() && !read.note.isEmpty())
        m_prompt.tell(tr("Nothing was added"), read.note);
    m_scans.addLibraryItems(m_screen, read);
    emit itemsHandedOver(int(read.items.size()));
}

void AlbumChooser::showAlbumList(const QString& libraryPath, QWidget* anchor) {
    m_reader = std::make_shared<PhotoLibraryReader>(libraryPath);
    m_albums.clear();
    m_filling = true;
    m_list->clear();
    m_filling = false;
    m_title->setText(tr("Library: %1").arg(m_reader->source().name));
    m_status->setText(tr("Reading the albums…"));
    m_status->show();
    m_allAlbums->setChecked(true);
    m_allAlbums->setEnabled(false);
    m_okAlbumList->setEnabled(false);
    setFace(Face::AlbumList);
    popUpBelow(anchor);
    m_busy = true;
    std::function<std::pair<QList<LibraryAlbum>, QString>()> work = [reader = m_reader] {
        QList<LibraryAlbum> albums = reader->albums();
        return std::make_pair(albums, reader->note());
    };
    runInBackground<std::pair<QList<LibraryAlbum>, QString>>(
        this, work, [this](const std::pair<QList<LibraryAlbum>, QString>& result) {
            m_busy = false;
            fillAlbumList(result.first, result.second);
        });
}

void AlbumChooser::fillAlbumList(const QList<LibraryAlbum>& albums, const QString& note) {
    m_albums = albums;
    m_filling = true;
    m_list->clear();
    for (const LibraryAlbum& album : albums) {
        auto* item = new QListWidgetItem(album.name, m_list);
        item->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
        item->setCheckState(album.isSelected ? Qt::Checked : Qt::Unchecked);
    }
    m_filling = false;
    m_allAlbums->setEnabled(!albums.isEmpty());
    m_allAlbums->setChecked(!albums.isEmpty());
    m_okAlbumList->setEnabled(true);
    if (!note.isEmpty())
        m_status->setText(note);
    else if (albums.isEmpty())
        m_status->setText(tr("This library has no albums."));
    m_status->setVisible(albums.isEmpty());
    m_list->setVisible(!albums.isEmpty());
    emit albumsShown();
}

void AlbumChooser::clickedAllAlbumList(bool on) {
    m_filling = true;
    for (int row = 0; row < m_albums.size(); ++row) {
        m_albums[row].isSelected = on;
        m_list->item(row)->setCheckState(on ? Qt::Checked : Qt::Unchecked);
    }
    m_filling = false;
    m_allAlbums->setChecked(on);
}

void AlbumChooser::clickedCheckAlbum(int row, bool on) {
    if (row < 0 || row >= m_albums.size())
        return;
    m_albums[row].isSelected = on;
    if (QListWidgetItem* item = m_list->item(row);
        item && item->checkState() != (on ? Qt::Checked : Qt::Unchecked)) {
        m_filling = true;
        item->setCheckState(on ? Qt::Checked : Qt::Unchecked);
        m_filling = false;
    }
    const bool all = std::all_of(m_albums.cbegin(), m_albums.cend(),
                                 [](const LibraryAlbum& a) { return a.isSelected; });
    m_allAlbums->setChecked(all);
}

void AlbumChooser::onItemChanged(QListWidgetItem* item) {
    if (m_filling)
        return;
    clickedCheckAlbum(m_list->row(item), item->checkState() == Qt::Checked);
}

void AlbumChooser::clickedOKAlbumList() {
    const bool any = std::any_of(m_albums.cbegin(), m_albums.cend(),
                                 [](const LibraryAlbum& a) { return a.isSelected; });
    if (!m_reader || m_busy || !any) {
        hide();
        emit itemsHandedOver(0);
        return;
    }
    m_busy = true;
    m_okAlbumList->setEnabled(false);
    m_status->setText(tr("Reading the chosen albums…"));
    std::function<LibraryRead()> work = [reader = m_reader, albums = m_albums] {
        return reader->readAlbums(albums);
    };
    runInBackground<LibraryRead>(this, work, [this](const LibraryRead& read) {
        m_busy = false;
        hide();
        handOver(read);
    });
}

void AlbumChooser::clickedCancel() {
    hide();
}

} // namespace tagmoor
