#pragma once

#include <QWidget>

class QStackedLayout;

namespace tagmoor {

class AddFilesScreen;
class AppDelegate;
class HomeScreen;
class PresetsDetailsViewController;

// The root of the main window: one container whose child is chosen by UpdateVCOTM. 0 shows
// the add screen, 1 the home screen, 2 the preset details panel; any other index leaves the
// container empty. The screens are made once and kept.
class RootView : public QWidget {
    Q_OBJECT
public:
    explicit RootView(AppDelegate& app, QWidget* parent = nullptr);

    void updateVC(int selectedIndex);
    int selectedIndex() const { return m_selectedIndex; }
    // The child now shown, or nullptr when the container is empty.
    QWidget* currentChild() const;

    AddFilesScreen* addFilesScreen() const { return m_addFiles; }
    HomeScreen* homeScreen() const { return m_home; }
    QWidget* presetsDetails() const;
    PresetsDetailsViewController* presetsPanel() const { return m_presetsDetails; }

    // "Add Photos" of the menu: the panel of the screen on show.
    void addFiles();

private:
    QStackedLayout* m_stack;
    AddFilesScreen* m_addFiles;
    HomeScreen* m_home;
    PresetsDetailsViewController* m_presetsDetails;
    QWidget* m_empty;
    int m_selectedIndex = 0;
};

} // namespace tagmoor
