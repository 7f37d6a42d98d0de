#pragma once

#include <QList>
#include <QObject>

class QAction;

namespace tagmoor {

class HomeScreen;

// The home screen's actions as menu entries with their keys: marking, removing, the sheets of
// the side pane, Review and Start Process, and the tips. The main window lists them in its
// menus; they are on only while the home screen is up, and those that need marked photos
// only while some are marked.
class HomeMenuActions : public QObject {
    Q_OBJECT
public:
    explicit HomeMenuActions(HomeScreen& home);

    // In menu order; a null entry stands for a separator.
    const QList<QAction*>& photoActions() const { return m_photoActions; }
    // Copy Metadata and Paste Metadata..., for the Edit menu.
    const QList<QAction*>& editActions() const { return m_editActions; }
    // Export Metadata... and Import Metadata..., for the File menu.
    const QList<QAction*>& fileActions() const { return m_fileActions; }
    QAction* tips() const { return m_tips; }

    // The screen is up (or not), with photos marked (or not).
    void update(bool screenUp, bool anyMarked);

private:
    QAction* add(const QString& name, const QString& text, const QKeySequence& keys,
                 bool needsMarks);
    void addExchangeActions();

    HomeScreen& m_home;
    QList<QAction*> m_photoActions;
    QList<QAction*> m_editActions;
    QList<QAction*> m_fileActions;
    QList<QAction*> m_needMarks;
    QList<QAction*> m_needScreen;
    QAction* m_tips;
};

} // namespace tagmoor
