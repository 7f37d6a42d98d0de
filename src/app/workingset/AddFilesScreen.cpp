#include "app/workingset/AddFilesScreen.h"

#include "app/photolibrary/AlbumChooser.h"
#include "app/widgets/DimmingCover.h"
#include "app/workingset/DropView.h"
#include "foundation/AppEvents.h"
#include "foundation/Settings.h"
#include "foundation/UserPrompt.h"
#include "workingset/PanelFilter.h"
#include "workingset/ScanController.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tagmoor {

namespace {

QLabel* makeLabel(const QString& name, const QString& text, double scale, bool bold) {
    auto* label = new QLabel(text);
    label->setObjectName(name);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * scale);
    font.setBold(bold);
    label->setFont(font);
    return label;
}

} // namespace

AddFilesScreen::AddFilesScreen(const Objects& objects, QWidget* parent)
    : QWidget(parent), m_objects(objects), m_dropView(new DropView(objects.events)),
      m_addPhotos(new QPushButton), m_addLibrary(new QPushButton), m_topLayer(nullptr),
      m_chooser(new AlbumChooser(objects.scans, objects.prompt, PanelScreen::AddScreen, this)) {
    setObjectName(QStringLiteral("AddFiles"));

    auto* imgView = new QLabel;
    imgView->setObjectName(QStringLiteral("imgView"));
    imgView->setPixmap(QIcon(QStringLiteral(":/icons/tagmoor.svg"))
                           .pixmap(QSize(112, 112), imgView->devicePixelRatioF()));
    imgView->setAlignment(Qt::AlignCenter);

    auto* welcome =
        makeLabel(QStringLiteral("lblWelcomeToTagmoor"), tr("Welcome to Tagmoor"), 1.9, true);
    auto* addImages =
        makeLabel(QStringLiteral("lblAddImages"),
                  tr("Add photos or folders to edit their metadata in one go"), 1.15, false);
    auto* dragAndDrop = makeLabel(QStringLiteral("lblDragAndDrop"),
                                  tr("Drag and drop photos or folders here"), 1.0, false);
    dragAndDrop->setForegroundRole(QPalette::PlaceholderText);

    m_addPhotos->setObjectName(QStringLiteral("btnAddPhotos"));
    m_addPhotos->setText(tr("Add Photos"));
    m_addPhotos->setDefault(true);
    m_addPhotos->setMinimumSize(180, 36);
    m_addLibrary->setObjectName(QStringLiteral("btnAddPhotosLibrary"));
    m_addLibrary->setText(tr("Add from Photo Library"));
    m_addLibrary->setMinimumSize(180, 36);
    connect(m_addPhotos, &QPushButton::clicked, this, &AddFilesScreen::clickedAddPhotos);
    connect(m_addLibrary, &QPushButton::clicked, this, &AddFilesScreen::clickedAddPhotosLibrary);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(12);
    buttons->addStretch(1);
    buttons->addWidget(m_addPhotos);
    buttons->addWidget(m_addLibrary);
    buttons->addStretch(1);

    auto* inside = new QVBoxLayout(m_dropView);
    inside->setContentsMargins(40, 36, 40, 36);
    inside->setSpacing(10);
    inside->addStretch(1);
    inside->addWidget(imgView);
    inside->addWidget(welcome);
    inside->addWidget(addImages);
    inside->addSpacing(14);
    inside->addLayout(buttons);
    inside->addSpacing(6);
    inside->addWidget(dragAndDrop);
    inside->addStretch(1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 28, 28, 28);
    layout->addWidget(m_dropView);

    m_topLayer = new DimmingCover(this);
    m_topLayer->setObjectName(QStringLiteral("boxTopLayer"));
    m_topLayer->hide();
    connect(&objects.events, &AppEvents::HideUnhideTopLayerTM, m_topLayer,
            [this](bool isHidden) { m_topLayer->setHidden(isHidden); });
    connect(&objects.events, &AppEvents::DropViewOTM, this, &AddFilesScreen::getDropViewItems);
    connect(&objects.events, &AppEvents::AfterFinishOTM, this,
            &AddFilesScreen::getAfterFinishResult);
}

void AddFilesScreen::clickedAddPhotos() {
    const QStringList chosen =
        m_objects.prompt.openPanel(addPhotosPanelRequest(PanelScreen::AddScreen));
    if (chosen.isEmpty())
        return;
    m_objects.scans.addFromPanel(PanelScreen::AddScreen, chosen);
}

void AddFilesScreen::clickedAddPhotosLibrary() {
    m_chooser->showAddFilesFace(m_addLibrary);
}

bool AddFilesScreen::isBlockedByOverlay() const {
    if (!m_objects.settings.startup().has_value())
        return true;
    if (m_topLayer->isVisible())
        return true;
    const QWidget* top = window();
    for (const auto* cover : top->findChildren<DimmingCover*>()) {
        if (cover->isVisible())
            return true;
    }
    return false;
}

void AddFilesScreen::getAfterFinishResult() {
    // The run's sheet is gone and the list is empty: the next list starts from here, so the
    // keyboard starts on "Add Photos".
    m_topLayer->hide();
    m_addPhotos->setFocus(Qt::OtherFocusReason);
}

void AddFilesScreen::getDropViewItems(const QStringList& paths) {
    if (paths.isEmpty() || isBlockedByOverlay())
        return;
    m_objects.scans.addFromDrop(paths);
}

} // namespace tagmoor
