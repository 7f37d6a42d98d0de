#include "app/widgets/DialogPrompt.h"

#include "app/widgets/DimmingCover.h"
#include "app/widgets/FilePanel.h"
#include "app/widgets/TickListDialog.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace tagmoor {

int DialogPrompt::ask(const Alert& alert) {
    // The window below is dimmed while the question stands.
    const auto cover = coverWindow();
    QMessageBox box(m_window);
    box.setWindowModality(Qt::WindowModal);
    box.setWindowTitle(alert.title);
    box.setText(QStringLiteral("<b>%1</b>").arg(alert.title.toHtmlEscaped()));
    box.setInformativeText(alert.text);
    // Wide enough for the title on one line, in the box and in the title bar, which a window
    // manager would otherwise cut short; QMessageBox sizes itself from its grid.
    QFont bold = box.font();
    bold.setBold(true);
    const int titleWidth = QFontMetrics(bold).horizontalAdvance(alert.title) + 120;
    if (auto* grid = qobject_cast<QGridLayout*>(box.layout()))
        grid->addItem(new QSpacerItem(std::max(420, titleWidth), 0, QSizePolicy::Minimum,
                                      QSizePolicy::Expanding),
                      grid->rowCount(), 0, 1, grid->columnCount());
    // Every alert of the program has the style of a warning, questions included.
    box.setIcon(QMessageBox::Warning);
    // One role for all buttons keeps them in the order given, "YES" before "NO".
    QList<QAbstractButton*> buttons;
    for (const QString& text : alert.buttons)
        buttons.append(box.addButton(text, QMessageBox::ActionRole));
    if (buttons.isEmpty())
        buttons.append(box.addButton(QStringLiteral("OK"), QMessageBox::ActionRole));
    box.setDefaultButton(qobject_cast<QPushButton*>(buttons.first()));
    box.setEscapeButton(buttons.last());
    box.exec();
    const int index = int(buttons.indexOf(box.clickedButton()));
    return index < 0 ? int(buttons.size()) - 1 : index;
}

std::unique_ptr<DimmingCover> DialogPrompt::coverWindow() const {
    QWidget* content = m_window;
    if (auto* main = qobject_cast<QMainWindow*>(m_window.data()); main && main->centralWidget())
        content = main->centralWidget();
    if (!content || !content->isVisible())
        return nullptr;
    // A chain of questions already keeps its own cover up: one dimming is enough.
    for (const DimmingCover* other : content->findChildren<DimmingCover*>()) {
        if (other->isVisible())
            return nullptr;
    }
    // The content is the window less its title bar, which the window manager draws outside.
    auto cover = std::make_unique<DimmingCover>(content);
    cover->show();
    return cover;
}

QStringList DialogPrompt::openPanel(const OpenPanelRequest& request) {
    return openPanelWithAccessory(request).paths;
}

PanelAnswer DialogPrompt::openPanelWithAccessory(const OpenPanelRequest& request) {
    const auto cover = coverWindow();
    FilePanel panel(m_window, request);
    const bool accepted = panel.exec() == QDialog::Accepted;
    return {accepted ? panel.chosenPaths() : QStringList(), panel.accessoryClicked()};
}

TextAnswer DialogPrompt::askForText(const TextQuestion& question) {
    const auto cover = coverWindow();
    QDialog box(m_window);
    box.setObjectName(QStringLiteral("textQuestion"));
    box.setWindowModality(Qt::WindowModal);
    box.setWindowTitle(question.alert.title);
    auto* title = new QLabel(QStringLiteral("<b>%1</b>").arg(question.alert.title.toHtmlEscaped()));
    auto* text = new QLabel(question.alert.text);
    text->setWordWrap(true);
    auto* field = new QLineEdit(question.text);
    field->setObjectName(QStringLiteral("txtFieldPresetName"));
    field->selectAll();
    auto* suppress = new QCheckBox(question.suppressionTitle);
    suppress->setObjectName(QStringLiteral("suppressionButton"));
    suppress->setVisible(!question.suppressionTitle.isEmpty());
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    int chosen = int(question.alert.buttons.size()) - 1;
    for (int i = 0; i < question.alert.buttons.size(); ++i) {
        auto* button = new QPushButton(question.alert.buttons[i]);
        button->setDefault(i == 0);
        QObject::connect(button, &QPushButton::clicked, &box, [&box, &chosen, i] {
            chosen = i;
            box.accept();
        });
        buttons->addWidget(button);
    }
    // The warning icon of the other alerts, beside the texts as a message box has it.
    auto* icon = new QLabel;
    icon->setObjectName(QStringLiteral("alertIcon"));
    const int side = box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &box);
    icon->setPixmap(box.style()
                        ->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, &box)
                        .pixmap(QSize(side, side), box.devicePixelRatioF()));
    icon->setAlignment(Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->addWidget(title);
    texts->addWidget(text);
    texts->addWidget(field);
    texts->addWidget(suppress);
    auto* body = new QHBoxLayout;
    body->setSpacing(16);
    body->addWidget(icon);
    body->addLayout(texts, 1);
    auto* layout = new QVBoxLayout(&box);
    layout->addLayout(body);
    layout->addLayout(buttons);
    box.setMinimumWidth(440);
    box.exec();
    return {chosen, field->text(), suppress->isChecked()};
}

QString DialogPrompt::savePanel(const SavePanelRequest& request) {
    const auto cover = coverWindow();
    // The same dialog on every desktop, so that it sits over the cover like the other panels.
    QFileDialog panel(m_window, request.prompt, request.directory);
    panel.setObjectName(QStringLiteral("savePanel"));
    panel.setOption(QFileDialog::DontUseNativeDialog);
    panel.setAcceptMode(QFileDialog::AcceptSave);
    panel.setFileMode(QFileDialog::AnyFile);
    panel.setWindowModality(Qt::WindowModal);
    if (!request.allowedExtensions.isEmpty()) {
        QStringList patterns;
        for (const QString& extension : request.allowedExtensions)
            patterns << QStringLiteral("*.") + extension;
        panel.setNameFilter(patterns.join(QLatin1Char(' ')));
        panel.setDefaultSuffix(request.allowedExtensions.first());
    }
    panel.selectFile(request.fileName);
    if (panel.exec() != QDialog::Accepted || panel.selectedFiles().isEmpty())
        return {};
    return panel.selectedFiles().first();
}

TickAnswer DialogPrompt::askToTick(const TickQuestion& question) {
    const auto cover = coverWindow();
    TickListDialog box(m_window, question);
    box.exec();
    return box.answer();
}

} // namespace tagmoor
