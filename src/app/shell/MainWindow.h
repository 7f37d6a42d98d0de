#pragma once

#include <QMainWindow>

class QAction;

namespace tagmoor {

class AppDelegate;
class RootView;

// The one main window: the root view in the middle, the application menu above.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(AppDelegate& app, QWidget* parent = nullptr);

    RootView* rootView() const { return m_root; }

    // The Window menu's entry: brings the main window back to the front.
    void showTM();

    // File > Undo Last Batch...: shows the past runs, newest first, and after a "YES" undoes
    // the newest one not undone on a worker thread, then tells what became of its files.
    void undoLastBatch();

protected:
    // Closing the window ends the program. A running batch is asked about first, as its Stop
    // button asks; "NO" keeps the window and the run.
    void closeEvent(QCloseEvent* event) override;

private:
    void tappedAbout();
    // The answers to Check for Updates that need no network: no address, or one refused.

    AppDelegate& m_app;
    RootView* m_root;
    QAction* m_preferences = nullptr;
    QAction* m_undoBatch = nullptr;
    QAction* m_checkForUpdates = nullptr;
    QAction* m_about = nullptr;
};

} // namespace tagmoor
