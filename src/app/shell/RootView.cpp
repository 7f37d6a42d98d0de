#include "app/shell/RootView.h"

#include "app/presets/PresetsDetailsViewController.h"
#include "app/shell/AppDelegate.h"
#include "app/workingset/AddFilesScreen.h"
#include "app/workingset/HomeScreen.h"

#include <QStackedLayout>

namespace tagmoor {

RootView::RootView(AppDelegate& app, QWidget* parent)
    : QWidget(parent), m_stack(new QStackedLayout(this)),
      m_addFiles(new AddFilesScreen({app.events(), app.scans(), app.prompt(), app.settings()})),
      m_home(new HomeScreen({app.homeSession(), app.listModel(), app.thumbnails()})),
      m_presetsDetails(new PresetsDetailsViewController(
          {app.presets(), app.events(), app.prompt(), app.workingSet(), app.editorState()})),
      m_empty(new QWidget) {
    setObjectName(QStringLiteral("containerView"));
    m_presetsDetails->setObjectName(QStringLiteral("presetsDetails"));
    m_empty->setObjectName(QStringLiteral("emptyContainer"));
    m_stack->setContentsMargins(0, 0, 0, 0);
    m_stack->addWidget(m_addFiles);
    m_stack->addWidget(m_home);
    m_stack->addWidget(m_presetsDetails);
    m_stack->addWidget(m_empty);
    m_stack->setCurrentWidget(m_addFiles);
    connect(&app.events(), &AppEvents::UpdateVCOTM, this, &RootView::updateVC);
}

void RootView::updateVC(RootPage page) {
    m_page = page;
    switch (page) {
    case RootPage::addFiles:
        m_stack->setCurrentWidget(m_addFiles);
        break;
    case RootPage::home:
        m_stack->setCurrentWidget(m_home);
        m_home->viewWillAppear();
        break;
    case RootPage::presetsDetails:
        m_stack->setCurrentWidget(m_presetsDetails);
        m_presetsDetails->viewWillAppear();
        break;
    case RootPage::none:
        m_stack->setCurrentWidget(m_empty);
        break;
    }
}

QWidget* RootView::currentChild() const {
    QWidget* current = m_stack->currentWidget();
    return current == m_empty ? nullptr : current;
}

void RootView::addFiles() {
    if (m_stack->currentWidget() == m_addFiles)
        m_addFiles->clickedAddPhotos();
    else if (m_stack->currentWidget() == m_home)
        m_home->clickedAddMore();
}

} // namespace tagmoor
