#include "app/workingset/HomeMenuActions.h"

#include "app/workingset/HomeScreen.h"

#include <QAction>
#include <QKeySequence>

namespace tagmoor {

HomeMenuActions::HomeMenuActions(HomeScreen& home) : QObject(&home), m_home(home) {
    const auto on = [](QAction* action, auto slot) {
        QObject::connect(action, &QAction::triggered, action, slot);
    };
    on(add(QStringLiteral("actionMarkAll"), tr("&Mark All"), QKeySequence::SelectAll, false),
       [this] { m_home.clickedSelectUnselectAll(true); });
    on(add(QStringLiteral("actionUnmarkAll"), tr("&Unmark All"),
           QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_A), false),
       [this] { m_home.clickedSelectUnselectAll(false); });
    on(add(QStringLiteral("actionRemoveMarked"), tr("&Remove Marked"), QKeySequence::Delete, true),
       [this] { m_home.clickedRemove(); });
    m_photoActions.append(nullptr);
    on(add(QStringLiteral("actionEditFields"), tr("&Edit Fields"),
           QKeySequence(Qt::CTRL | Qt::Key_E), true),
       [this] { m_home.focusEditor(); });
    on(add(QStringLiteral("actionLocation"), tr("&Location..."), QKeySequence(Qt::CTRL | Qt::Key_L),
           true),
       [this] { m_home.clickShowEditorGPS(); });
    on(add(QStringLiteral("actionRename"), tr("Re&name..."), QKeySequence(Qt::Key_F2), true),
       [this] { m_home.clickedRename(); });
    on(add(QStringLiteral("actionPresets"), tr("&Presets..."), QKeySequence(Qt::CTRL | Qt::Key_P),
           true),
       [this] { m_home.openPresets(); });
    on(add(QStringLiteral("actionResetAll"), tr("Reset &All"), QKeySequence(), true),
       [this] { m_home.clickedResetAll(); });
    m_photoActions.append(nullptr);
    on(add(QStringLiteral("actionReview"), tr("Re&view Changes..."),
           QKeySequence(Qt::CTRL | Qt::Key_R), true),
       [this] { m_home.openReview(); });
    on(add(QStringLiteral("actionStartProcess"), tr("&Start Process"),
           QKeySequence(Qt::CTRL | Qt::Key_Return), true),
       [this] { m_home.clickedStartProcess(); });

    addExchangeActions();

    m_tips = new QAction(tr("Show &Tips"), this);
    m_tips->setObjectName(QStringLiteral("actionTips"));
    m_tips->setShortcut(QKeySequence::HelpContents);
    connect(m_tips, &QAction::triggered, this, [this] { m_home.showTips(); });
    m_needScreen.append(m_tips);
    update(false, false);
}

QAction* HomeMenuActions::add(const QString& name, const QString& text, const QKeySequence& keys,
                              bool needsMarks) {
    auto* action = new QAction(text, this);
    action->setObjectName(name);
    action->setShortcut(keys);
    m_photoActions.append(action);
    (needsMarks ? m_needMarks : m_needScreen).append(action);
    return action;
}

void HomeMenuActions::addExchangeActions() {
    const auto on = [](QAction* action, auto slot) {
        QObject::connect(action, &QAction::triggered, action, slot);
    };
    // Each add() lands in the photo actions first; these go to menus of their own.
    const auto take = [this](QList<QAction*>& into) { into << m_photoActions.takeLast(); };
    on(add(QStringLiteral("actionCopyMetadata"), tr("&Copy Metadata"),
           QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C), true),
       [this] { m_home.copyMetadata(); });
    take(m_editActions);
    on(add(QStringLiteral("actionPasteMetadata"), tr("&Paste Metadata..."),
           QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_V), true),
       [this] { m_home.pasteMetadata(); });
    take(m_editActions);
    on(add(QStringLiteral("actionExportMetadata"), tr("&Export Metadata..."), QKeySequence(),
           false),
       [this] { m_home.exportMetadata(); });
    take(m_fileActions);
    on(add(QStringLiteral("actionImportMetadata"), tr("&Import Metadata..."), QKeySequence(),
           false),
       [this] { m_home.importMetadata(); });
    take(m_fileActions);
}

void HomeMenuActions::update(bool screenUp, bool anyMarked) {
    for (QAction* action : std::as_const(m_needScreen))
        action->setEnabled(screenUp);
    for (QAction* action : std::as_const(m_needMarks))
        action->setEnabled(screenUp && anyMarked);
}

} // namespace tagmoor
