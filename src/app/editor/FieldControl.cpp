#include "app/editor/FieldControl.h"

#include "editor/FormSections.h"
#include "editor/MetadataForm.h"
#include "model/FormFieldTable.h"

#include <QAction>
#include <QComboBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QLocale>
#include <QPainter>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolButton>

namespace tagmoor {

namespace {

// The date buttons are named after their field, not after the control.
QString dateButtonName(Field field) {
    switch (field) {
    case Field::DateTimeOriginal:
        return QStringLiteral("btnDateTimeOriginal");
    case Field::CreationDate:
        return QStringLiteral("btnDateCreation");
    case Field::ModifyDate:
        return QStringLiteral("btnDateModify");
    case Field::CreateDateXMP:
        return QStringLiteral("btnCreateDateXMP");
    case Field::ModifyDateXMP:
        return QStringLiteral("btnModifyDateXMP");
    default:
        return QStringLiteral("btnCreateDatePhotoshop");
    }
}

// A small sheet with a folded corner: a file beside the photo. Grey, which reads on light
// and dark fields alike; drawn for the screen's pixels.
QIcon sidecarIcon() {
    QIcon icon;
    for (const qreal scale : {1.0, 2.0}) {
        QPixmap pixmap(QSize(16, 16) * scale);
        pixmap.setDevicePixelRatio(scale);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(QColor(0x8a, 0x8a, 0x8a), 1.2));
        painter.setBrush(Qt::NoBrush);
        const QPolygonF sheet{{3.5, 1.5}, {9.5, 1.5}, {12.5, 4.5}, {12.5, 14.5}, {3.5, 14.5}};
        painter.drawPolygon(sheet);
        painter.drawPolyline(QPolygonF{{9.5, 1.5}, {9.5, 4.5}, {12.5, 4.5}});
        painter.drawLine(QPointF(5.5, 8.5), QPointF(10.5, 8.5));
        painter.drawLine(QPointF(5.5, 11.5), QPointF(10.5, 11.5));
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace

FieldControl::FieldControl(const FormField& field, QWidget* parent)
    : QWidget(parent), m_field(field.field) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    const QString name = QString::fromLatin1(field.control);
    if (field.kind == FormKind::Popup) {
        m_popup = new QComboBox;
        m_popup->setObjectName(name);
        m_popup->addItems(FormPopups::rowTexts(field.field));
        m_popup->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        m_popup->setMinimumContentsLength(8);
        connect(m_popup, &QComboBox::activated, this, [this](int row) {
            const int previous = m_shownRow;
            m_shownRow = row;
            emit rowChosen(m_field, row, previous);
        });
        layout->addWidget(m_popup, 1);
    } else if (field.field == Field::UserComment) {
        m_multiLine = new QPlainTextEdit;
        m_multiLine->setObjectName(name);
        m_multiLine->setTabChangesFocus(true);
        m_multiLine->setFixedHeight(m_multiLine->fontMetrics().lineSpacing() * 3 + 12);
        connect(m_multiLine, &QPlainTextEdit::textChanged, this,
                [this] { emit textEdited(m_field, m_multiLine->toPlainText()); });
        layout->addWidget(m_multiLine, 1);
    } else {
        m_line = new QLineEdit;
        m_line->setObjectName(name);
        m_line->setClearButtonEnabled(false);
        connect(m_line, &QLineEdit::textEdited, this,
                [this](const QString& text) { emit textEdited(m_field, text); });
        layout->addWidget(m_line, 1);
        if (field.isDate()) {
            m_dateButton = new QToolButton;
            m_dateButton->setObjectName(dateButtonName(field.field));
            m_dateButton->setText(tr("Set..."));
            m_dateButton->setToolTip(tr("Choose the rule of this date"));
            connect(m_dateButton, &QToolButton::clicked, this,
                    [this] { emit dateButtonClicked(m_field); });
            layout->addWidget(m_dateButton);
        }
    }
    // Screen readers name the input by its row's label and tell its family.
    QWidget* in = input();
    in->setAccessibleName(labelOf(field.field));
    m_description = tr("%1 field")
                        .arg(QString::fromLatin1(field.block == KeyBlock::Exif   ? "EXIF"
                                                 : field.block == KeyBlock::Iptc ? "IPTC"
                                                                                 : "XMP"));
    in->setAccessibleDescription(m_description);
    if (m_line) {
        m_sourceAction = m_line->addAction(sidecarIcon(), QLineEdit::TrailingPosition);
        m_sourceAction->setObjectName(name + QStringLiteral("SidecarSource"));
        m_sourceAction->setVisible(false);
    }
    if (m_dateButton)
        m_dateButton->setAccessibleName(tr("Set the rule of %1").arg(labelOf(field.field)));
    setEdited(false);
}

QWidget* FieldControl::input() const {
    if (m_popup)
        return m_popup;
    if (m_multiLine)
        return m_multiLine;
    return m_line;
}

void FieldControl::showValue(const MetadataForm& form) {
    if (m_popup) {
        m_shownRow = form.popupRow(m_field);
        const QSignalBlocker block(m_popup);
        m_popup->setCurrentIndex(m_shownRow);
        return;
    }
    const QString text = form.text(m_field);
    const QString placeholder = form.placeholderText(m_field);
    if (m_multiLine) {
        const QSignalBlocker block(m_multiLine);
        if (m_multiLine->toPlainText() != text)
            m_multiLine->setPlainText(text);
        m_multiLine->setPlaceholderText(placeholder);
        return;
    }
    if (m_line->text() != text) {
        const int cursor = m_line->cursorPosition();
        m_line->setText(text);
        m_line->setCursorPosition(std::min(cursor, int(text.size())));
    }
    m_line->setPlaceholderText(placeholder);
    // A text wider than the field (a date rule's summary, a long caption) is read whole in
    // the tooltip.
    const bool cut = m_line->fontMetrics().horizontalAdvance(text) > m_line->width() - 8;
    m_line->setToolTip(cut || m_dateButton ? text : QString());
}

void FieldControl::showSource(const MetadataForm& form) {
    const MetadataForm::SidecarSource& source = form.sidecarSource(m_field);
    m_fromSidecar = source.photos > 0;
    if (!m_fromSidecar)
        m_sourceText.clear();
    else if (form.isMultipleSelected() && source.photos == 1)
        m_sourceText = tr("From the XMP sidecar of one of the marked photos");
    else if (form.isMultipleSelected())
        m_sourceText = tr("From the XMP sidecars of %1 of the marked photos")
                           .arg(QLocale().toString(source.photos));
    else
        m_sourceText = tr("From the XMP sidecar %1").arg(QFileInfo(source.path).fileName());
    updateSourceMark();
}

void FieldControl::updateSourceMark() {
    const bool shown = m_fromSidecar && !m_edited;
    const QString text = shown ? m_sourceText : QString();
    if (shown == m_sourceShown && (!m_sourceAction || m_sourceAction->toolTip() == text))
        return;
    m_sourceShown = shown;
    QWidget* in = input();
    in->setAccessibleDescription(shown ? m_description + QStringLiteral(", ") + text
                                       : m_description);
    if (m_sourceAction) {
        m_sourceAction->setToolTip(text);
        m_sourceAction->setVisible(shown);
    } else {
        in->setToolTip(text);
    }
}

void FieldControl::setEdited(bool edited) {
    m_edited = edited;
    updateSourceMark();
    QWidget* widget = input();
    if (widget->property("edited").toBool() == edited && widget->property("edited").isValid())
        return;
    widget->setProperty("edited", edited);
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
}

void FieldControl::restoreRow(int row) {
    if (!m_popup)
        return;
    m_shownRow = row;
    const QSignalBlocker block(m_popup);
    m_popup->setCurrentIndex(row);
}

} // namespace tagmoor
