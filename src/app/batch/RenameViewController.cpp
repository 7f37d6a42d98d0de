#include "app/batch/RenameViewController.h"

#include "foundation/Settings.h"
#include "foundation/ValueForm.h"
#include "rename/CaptureDateName.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace tagmoor {

namespace {

using Option = RenamePanel::Option;

QLabel* label(const char* name, const QString& text) {
    auto* l = new QLabel(text);
    l->setObjectName(QString::fromLatin1(name));
    return l;
}

template <typename W> W* named(W* widget, const char* name) {
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

QLabel* exampleLabel(const char* name) {
    QLabel* l = label(name, QString());
    l->setForegroundRole(QPalette::PlaceholderText);
    return l;
}

} // namespace

RenameViewController::RenameViewController(Rename& renameSettings, bool& overwriteExisting,
                                           const Settings& settings, UserPrompt& prompt,
                                           QWidget* parent)
    : QDialog(parent), m_panel(renameSettings), m_overwriteExisting(overwriteExisting),
      m_settings(settings), m_prompt(prompt), m_addText(named(new QLineEdit, "txtFieldAddText")),
      m_addPosition(named(new QComboBox, "comboBoxAddText")),
      m_find(named(new QLineEdit, "txtFieldFindReplaceText")),
      m_replaceWith(named(new QLineEdit, "txtFieldReplaceWithReplaceText")),
      m_nameFormat(named(new QComboBox, "comboBoxNameFormat")),
      m_where(named(new QComboBox, "comboBoxWhere")),
      m_customFormat(named(new QLineEdit, "txtFieldCustomFormat")),
      m_startNumber(named(new QLineEdit, "txtFieldStartNumberAt")),
      m_minDigits(named(new QComboBox, "comboBoxMinNoDigits")),
      m_addExample(exampleLabel("lblExampleAddText")),
      m_replaceExample(exampleLabel("lblExampleReplaceText")),
      m_formatExample(exampleLabel("lblExampleFileNameFormat")),
      m_capturePattern(named(new QLineEdit, "txtFieldCapturePattern")),
      m_captureExample(exampleLabel("lblExampleCaptureDate")) {
    setObjectName(QStringLiteral("RenameViewController"));
    setWindowTitle(tr("Rename"));
    setWindowModality(Qt::WindowModal);
    // The fields stand beside their option, not a label of their own: screen readers get names.
    m_addText->setAccessibleName(tr("Text to add"));
    m_find->setAccessibleName(tr("Text to find"));
    m_replaceWith->setAccessibleName(tr("Replace with"));
    m_customFormat->setAccessibleName(tr("Custom format"));
    m_startNumber->setAccessibleName(tr("Start number"));
    m_capturePattern->setAccessibleName(tr("Capture date pattern"));

    makeOptions();
    fillChoices();
    connectInputs();
    QGridLayout* grid = makeGrid();
    QLabel* title = makeTitle();
    QHBoxLayout* buttons = makeButtons();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(22, 18, 22, 16);
    layout->addWidget(title);
    layout->addWidget(label("lblConfigureSettingsToRename",
                            tr("Configure Settings to Rename the selected files")));
    layout->addSpacing(6);
    layout->addLayout(grid);
    layout->addSpacing(8);
    layout->addLayout(buttons);
    setMinimumWidth(520);
}

void RenameViewController::makeOptions() {
    const char* optionNames[] = {"btnKeepOriginal", "btnAddText", "btnReplaceText",
                                 "btnChangeFileNameFormat", "btnCaptureDateName"};
    const QString optionTexts[] = {tr("Keep Original File Names"), tr("Add Text:"),
                                   tr("Replace With:"), tr("Change FIle Name Format:"),
                                   tr("Name From the Capture Date:")};
    auto* group = new QButtonGroup(this);
    for (int i = 0; i < 5; ++i) {
        m_options[i] = named(new QRadioButton(optionTexts[i]), optionNames[i]);
        group->addButton(m_options[i], i);
    }
    connect(group, &QButtonGroup::idClicked, this, [this](int id) { clickOption(Option(id)); });
}

void RenameViewController::clickOption(Option option) {
    m_panel.clickOption(option);
    takeShownValues(option);
    refreshControls();
}

// An input keeps its row or text while its option is off, so the option, once chosen again,
// takes what its inputs show: the rule never holds a value the sheet does not show. The
// described form takes only the name format's row and keeps the option's other values.
void RenameViewController::takeShownValues(Option option) {
    if (option == Option::format)
        m_panel.setNameFormatRow(m_nameFormat->currentIndex());
    if (!isStandardForm())
        return;
    if (option == Option::add) {
        m_panel.setAddText(m_addText->text());
        m_panel.setAddPosition(m_addPosition->currentIndex());
    } else if (option == Option::format) {
        m_panel.setWhereRow(m_where->currentIndex());
        m_panel.setCustomFormat(m_customFormat->text());
        m_startNumber->setText(m_panel.setStartNumberText(m_startNumber->text()));
        m_panel.setMinDigitsRow(m_minDigits->currentIndex());
    }
}

// The rows of the popups, and what the start number takes.
void RenameViewController::fillChoices() {
    m_addPosition->addItems({tr("before name"), tr("after name")});
    m_where->addItems({tr("before name"), tr("after name")});
    m_nameFormat->addItems({tr("Name and Index"), tr("Name and Counter"), tr("Name and Date")});
    m_minDigits->addItems({tr("Auto"), QStringLiteral("1"), QStringLiteral("2"),
                           QStringLiteral("3"), QStringLiteral("4"), QStringLiteral("5"),
                           QStringLiteral("6"), QStringLiteral("7")});
    // Any number as typed, with a sign or a decimal point; its integer value counts.
    m_startNumber->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("[+-]?[0-9]*\\.?[0-9]*")), m_startNumber));
}

// Every input hands its change to the panel at once, and the examples follow.
void RenameViewController::connectInputs() {
    const auto onText = [this](QLineEdit* field, auto setter) {
        connect(field, &QLineEdit::textEdited, this, [this, setter](const QString& text) {
            (m_panel.*setter)(text);
            refreshExamples();
        });
    };
    onText(m_addText, &RenamePanel::setAddText);
    onText(m_find, &RenamePanel::setFindText);
    onText(m_replaceWith, &RenamePanel::setReplaceWith);
    onText(m_customFormat, &RenamePanel::setCustomFormat);
    onText(m_capturePattern, &RenamePanel::setCapturePattern);
    m_capturePattern->setPlaceholderText(defaultCaptureDatePattern());
    m_capturePattern->setToolTip(
        tr("A date pattern: yyyy year, MM month, dd day, HH hour, mm minute, ss second. "
           "Photos taken in the same second get -1, -2 ..."));
    connect(m_startNumber, &QLineEdit::textEdited, this, [this](const QString& text) {
        const QString shown = m_panel.setStartNumberText(text);
        if (shown != text)
            m_startNumber->setText(shown);
        refreshExamples();
    });
    connect(m_addPosition, &QComboBox::activated, this, [this](int row) {
        m_panel.setAddPosition(row);
        refreshExamples();
    });
    connect(m_where, &QComboBox::activated, this, [this](int row) { m_panel.setWhereRow(row); });
    connect(m_nameFormat, &QComboBox::activated, this, [this](int row) {
        m_panel.setNameFormatRow(row);
        refreshControls();
    });
    connect(m_minDigits, &QComboBox::activated, this, [this](int row) {
        m_panel.setMinDigitsRow(row);
        refreshExamples();
    });
}

// The options in a column, each with its inputs and example below it.
QGridLayout* RenameViewController::makeGrid() {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(6);
    grid->setColumnMinimumWidth(0, 24);
    int r = 0;
    grid->addWidget(m_options[0], r++, 0, 1, 3);
    grid->addWidget(m_options[1], r++, 0, 1, 3);
    auto* addRow = new QHBoxLayout;
    addRow->addWidget(m_addText, 1);
    addRow->addWidget(m_addPosition);
    grid->addWidget(label("lblAddText", tr("Add Text:")), r, 1);
    grid->addLayout(addRow, r++, 2);
    grid->addWidget(m_addExample, r++, 1, 1, 2);
    grid->addWidget(m_options[2], r++, 0, 1, 3);
    grid->addWidget(label("lblFind", tr("Find:")), r, 1);
    grid->addWidget(m_find, r++, 2);
    grid->addWidget(label("lblReplaceWidth", tr("Replace With:")), r, 1);
    grid->addWidget(m_replaceWith, r++, 2);
    grid->addWidget(m_replaceExample, r++, 1, 1, 2);
    grid->addWidget(m_options[3], r++, 0, 1, 3);
    const std::pair<QLabel*, QWidget*> formatRows[] = {
        {label("lblNameFormat", tr("Name Format:")), m_nameFormat},
        {label("lblWhere", tr("Where:")), m_where},
        {label("lblCustomFormat", tr("Custom Format:")), m_customFormat},
        {label("lblStartNumbersAt", tr("Start numbers at:")), m_startNumber},
        {label("lblMinNumbersOfDigits", tr("Min. number of digits:")), m_minDigits},
    };
    for (const auto& [text, control] : formatRows) {
        grid->addWidget(text, r, 1);
        grid->addWidget(control, r++, 2);
    }
    grid->addWidget(m_formatExample, r++, 1, 1, 2);
    grid->addWidget(m_options[4], r++, 0, 1, 3);
    grid->addWidget(label("lblCapturePattern", tr("Date Pattern:")), r, 1);
    grid->addWidget(m_capturePattern, r++, 2);
    grid->addWidget(m_captureExample, r++, 1, 1, 2);
    grid->setColumnStretch(2, 1);
    return grid;
}

QLabel* RenameViewController::makeTitle() {
    auto* title = label("lblRename", tr("Rename"));
    QFont font = title->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.3);
    title->setFont(font);
    return title;
}

QHBoxLayout* RenameViewController::makeButtons() {
    auto* save = named(new QPushButton(tr("Save")), "btnNext");
    auto* close = named(new QPushButton(tr("Close")), "btnClose");
    save->setDefault(true);
    connect(save, &QPushButton::clicked, this, &RenameViewController::clickNext);
    connect(close, &QPushButton::clicked, this, &RenameViewController::clickedClose);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(close);
    buttons->addWidget(save);
    return buttons;
}

void RenameViewController::showFor(const QString& firstPhotoPath) {
    const QFileInfo info(firstPhotoPath);
    const QString name = info.fileName();
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const bool hasExtension = dot > 0;
    const bool wasOpened = m_panel.isOpened();
    m_panel.open(hasExtension ? name.left(dot) : name,
                 hasExtension ? name.mid(dot + 1) : QString());
    if (!wasOpened)
        resetAllComponents();
}

void RenameViewController::resetAllComponents() {
    // The options that are off show their defaults.
    const Rename& rule = m_panel.rule();
    const auto add = rule.valuesOf<AddText>();
    const auto replace = rule.valuesOf<ReplaceText>();
    const auto format = rule.valuesOf<ChangeFileNameFormat>();
    const auto capture = rule.valuesOf<CaptureDateName>();
    m_addText->setText(add.addTextValueAT);
    m_addPosition->setCurrentIndex(add.addTextPositionAT == RenamePosition::beforeName ? 0 : 1);
    m_find->setText(replace.findTextRT);
    m_replaceWith->setText(replace.replaceWithRT);
    m_nameFormat->setCurrentIndex(m_panel.nameFormatRow());
    m_where->setCurrentIndex(format.whereTextPositionNF == RenamePosition::beforeName ? 0 : 1);
    m_customFormat->setText(format.customFormatValueNF);
    m_startNumber->setText(QString::number(format.startNumberAtNF));
    m_minDigits->setCurrentIndex(std::clamp(format.minNumberDigitsNF, 0, 7));
    m_capturePattern->setText(capture.captureDatePatternCD);
    refreshControls();
}

void RenameViewController::refreshControls() {
    const Option on = m_panel.option();
    m_options[int(on)]->setChecked(true);
    for (QWidget* w : {static_cast<QWidget*>(m_addText), static_cast<QWidget*>(m_addPosition)})
        w->setEnabled(on == Option::add);
    for (QWidget* w : {m_find, m_replaceWith})
        w->setEnabled(on == Option::replace);
    const RenamePanel::FormatEnabled format = m_panel.formatEnabled();
    for (QWidget* w : {static_cast<QWidget*>(m_nameFormat), static_cast<QWidget*>(m_where),
                       static_cast<QWidget*>(m_customFormat)})
        w->setEnabled(format.format);
    m_minDigits->setEnabled(format.minDigits);
    m_startNumber->setEnabled(format.startNumber);
    m_capturePattern->setEnabled(on == Option::capture);
    // An option that is off shows its defaults.
    if (on != Option::add)
        m_addText->setText(AddText{}.addTextValueAT);
    if (on != Option::replace) {
        m_find->setText(ReplaceText{}.findTextRT);
        m_replaceWith->setText(ReplaceText{}.replaceWithRT);
    }
    if (on != Option::capture)
        m_capturePattern->setText(CaptureDateName{}.captureDatePatternCD);
    refreshExamples();
}

void RenameViewController::refreshExamples() {
    m_addExample->setText(m_panel.example(Option::add));
    m_replaceExample->setText(m_panel.example(Option::replace));
    m_formatExample->setText(m_panel.example(Option::format));
    m_captureExample->setText(m_panel.example(Option::capture));
}

void RenameViewController::clickNext() {
    if (m_panel.clickNext(m_prompt, m_overwriteExisting,
                          m_settings.isOverwriteIfAFileWithASameNameOrDefault()))
        accept();
}

void RenameViewController::clickedClose() {
    m_panel.clickClose();
    QDialog::reject();
}

} // namespace tagmoor
