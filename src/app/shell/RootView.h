#pragma once

#include "foundation/AppEvents.h"

#include <QWidget>

class QStackedLayout;

namespace tagmoor {

class AddFilesScreen;
class AppDelegate;
class HomeScreen;
class PresetsDetailsViewController;

// The root of the main window: one container whose child is chosen by UpdateVCOTM: the add
// screen, the home screen, the preset details panel, or nothing. The screens are made once and
// kept.
class RootView : public QWidget {
    Q_OBJECT
public:
    explicit RootView(AppDelegate& app, QWidget* parent = nullptr);

    void updateVC(RootPage page);
    // The page's number, 0 to 3, as the tests compare it.
    int selectedIndex() const { return int(m_page); }
    RootPage page() const { return m_page; }
    // The child now shown, or nullptr when the container is empty.
    QWidget* currentChild() const;

    HomeScreen* home() const { return m_home; }
    // "Add Photos" of the menu: the panel of the screen on show.
    void addFiles();

private:
    QStackedLayout* m_stack;
    AddFilesScreen* m_addFiles;
    HomeScreen* m_home;
    PresetsDetailsViewController* m_presetsDetails;
    QWidget* m_empty;
    RootPage m_page = RootPage::addFiles;
};

} // namespace tagmoor
