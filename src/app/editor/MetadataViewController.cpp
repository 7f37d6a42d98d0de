#include "app/editor/MetadataViewController.h"

#include "app/editor/FieldControl.h"
#include "app/editor/FormSectionView.h"
#include "dates/DateField.h"
#include "editor/MetadataForm.h"
#include "foundation/AppEvents.h"
#include "model/FormFieldTable.h"

#include <QCoreApplication>
#include <QFrame>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tagmoor {

namespace {

const char* kBoxNames[] = {"boxExif", "boxPICT", "boxXMP"};

// The edited mark, drawn on any input whose "edited" property is true.
const char* kEditedStyle = "QLineEdit[edited=\"true\"], QPlainTextEdit[edited=\"true\"],"
                           " QComboBox[edited=\"true\"] {"
                           " border: 1px solid palette(highlight); border-radius: 3px;"
                           " padding: 2px 4px; }";

} // namespace

MetadataViewController::MetadataViewController(MetadataForm& form, AppEvents& events,
                                               QWidget* parent)
    : QWidget(parent), m_form(form), m_scroll(new QScrollArea), m_popover(new QFrame(this)),
      m_popoverMessage(new QLabel) {
    setObjectName(QStringLiteral("MetadataViewController"));
    setStyleSheet(QString::fromLatin1(kEditedStyle));

    auto* content = new QWidget;
    content->setObjectName(QStringLiteral("metadataContent"));
    auto* contentLayout = new QVBoxLayout(content);
    contentLayout->setContentsMargins(4, 4, 12, 8);
    contentLayout->setSpacing(0);
    for (int i = 0; i < 3; ++i) {
        const Editor editor = Editor(i);
        auto* box = new QWidget;
        box->setObjectName(QString::fromLatin1(kBoxNames[i]));
        auto* boxLayout = new QVBoxLayout(box);
        boxLayout->setContentsMargins(0, 0, 0, 0);
        boxLayout->setSpacing(4);
        auto* title = new QLabel(QCoreApplication::translate("Form", editorTitle(editor)));
        title->setObjectName(QString::fromLatin1(editorTitleControl(editor)));
        QFont font = title->font();
        font.setBold(true);
        font.setPointSizeF(font.pointSizeF() * 1.15);
        title->setFont(font);
        boxLayout->addWidget(title);
        for (const FormSection& section : formSections()) {
            if (section.editor != editor)
                continue;
            auto* view = new FormSectionView(section);
            boxLayout->addWidget(view);
            m_sections.append(view);
            for (FieldControl* control : view->controls()) {
                m_controls[control->field()] = control;
                connect(control, &FieldControl::textEdited, this,
                        &MetadataViewController::textEdited);
                connect(control, &FieldControl::rowChosen, this,
                        &MetadataViewController::rowChosen);
                connect(control, &FieldControl::dateButtonClicked, this,
                        &MetadataViewController::dateButtonClicked);
            }
        }
        m_boxes[i] = box;
        m_boxTitles[i] = title;
        contentLayout->addWidget(box);
    }
    contentLayout->addStretch(1);

    m_scroll->setObjectName(QStringLiteral("scrollViewMetadataForm"));
    m_scroll->setWidget(content);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_scroll);

    // The limit message: a small frame beside the field that does not take the keyboard, so
    // typing goes on while it shows.
    m_popover->setObjectName(QStringLiteral("popoverDetails"));
    m_popover->setWindowFlags(Qt::ToolTip);
    m_popover->setFrameShape(QFrame::StyledPanel);
    m_popoverMessage->setObjectName(QStringLiteral("message"));
    auto* popoverLayout = new QVBoxLayout(m_popover);
    popoverLayout->setContentsMargins(10, 6, 10, 6);
    popoverLayout->addWidget(m_popoverMessage);
    m_popover->hide();

    connect(&m_form, &MetadataForm::formReset, this, &MetadataViewController::refreshAll);
    connect(&m_form, &MetadataForm::fieldChanged, this, &MetadataViewController::refreshField);
    connect(&m_form, &MetadataForm::editedFlagsChanged, this,
            &MetadataViewController::highlightEditedFields);
    connect(&m_form, &MetadataForm::enableComponentsChanged, this, &QWidget::setEnabled);
    connect(&events, &AppEvents::UpdateMultipleValuesOTM, &m_form,
            &MetadataForm::updateMultipleValues);

    showEditor(Editor::exif);
    refreshAll();
}

QWidget* MetadataViewController::box(Editor editor) const {
    return m_boxes[int(editor)];
}

void MetadataViewController::showEditor(Editor editor) {
    m_current = editor;
    for (int i = 0; i < 3; ++i)
        m_boxes[i]->setVisible(i == int(editor));
    m_scroll->verticalScrollBar()->setValue(0);
}

void MetadataViewController::reveal(Field field) {
    for (const FormSection& section : formSections()) {
        for (const FormLine& line : section.lines) {
            if (line.field == field && section.editor != m_current)
                showEditor(section.editor);
        }
    }
    if (QWidget* input = m_controls[field] ? m_controls[field]->input() : nullptr) {
        m_scroll->ensureWidgetVisible(input);
        input->setFocus(Qt::OtherFocusReason);
    }
}

void MetadataViewController::setHideGeneral(bool hide) {
    m_hideGeneral = hide;
    for (QLabel* title : m_boxTitles)
        title->setVisible(!hide);
    for (FormSectionView* section : m_sections)
        section->title()->setVisible(!hide);
}

void MetadataViewController::refreshAll() {
    for (FieldControl* control : std::as_const(m_controls)) {
        if (!control)
            continue;
        control->showValue(m_form);
        control->showSource(m_form);
    }
    highlightEditedFields();
}

void MetadataViewController::refreshField(Field field) {
    if (FieldControl* control = m_controls[field])
        control->showValue(m_form);
}

void MetadataViewController::highlightEditedFields() {
    for (FieldControl* control : std::as_const(m_controls)) {
        if (control)
            control->setEdited(m_form.isHome() && m_form.isEdited(control->field()));
    }
}

void MetadataViewController::textEdited(Field field, const QString& text) {
    const FieldInputResult result = m_form.editText(field, text);
    FieldControl* control = m_controls[field];
    if (result.text != text && control)
        control->showValue(m_form);
    if (result.limitMessage && control)
        showLimitMessage(control, *result.limitMessage);
}

void MetadataViewController::rowChosen(Field field, int row, int previousRow) {
    if (field == Field::GPSLatitudeRef || field == Field::GPSLongitudeRef) {
        if (!m_form.chooseReferenceRow(field, row)) {
            if (FieldControl* control = m_controls[field])
                control->restoreRow(previousRow);
        }
        return;
    }
    m_form.choosePopupRow(field, row);
}

void MetadataViewController::dateButtonClicked(Field field) {
    const auto date = dateFieldOf(field);
    if (!date)
        return;
    auto* panel = new DateConfigurationPanel(m_form, *date, this);
    m_datePanel = panel;
    FieldControl* control = m_controls[field];
    panel->popupAt(control && control->dateButton() ? static_cast<QWidget*>(control->dateButton())
                                                    : control);
}

void MetadataViewController::showLimitMessage(FieldControl* control, const QString& message) {
    m_popoverMessage->setText(message);
    m_popover->adjustSize();
    const QWidget* input = control->input();
    QPoint at = input->mapToGlobal(QPoint(0, input->height() + 2));
    if (const QScreen* screen = input->screen()) {
        const QRect room = screen->availableGeometry().adjusted(8, 8, -8, -8);
        at.setX(std::clamp(at.x(), room.left(),
                           std::max(room.left(), room.right() - m_popover->width())));
        at.setY(std::min(at.y(), std::max(room.top(), room.bottom() - m_popover->height())));
    }
    m_popover->move(at);
    m_popover->show();
    m_popover->raise();
    QTimer::singleShot(3000, m_popover, &QWidget::hide);
}

} // namespace tagmoor
