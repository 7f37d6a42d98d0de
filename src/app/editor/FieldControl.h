#pragma once

#include "editor/FormPopups.h"
#include "model/Field.h"

#include <QWidget>

class QAction;
class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QToolButton;

namespace tagmoor {

class MetadataForm;
struct FormField;

// One control of the editor form, made from its row of the field table: a text field, a
// multi-line comment, a popup over its code table, or a date field with its button. It shows
// what the form holds and reports what the user does; it decides nothing itself.
class FieldControl : public QWidget {
    Q_OBJECT
public:
    FieldControl(const FormField& field, QWidget* parent = nullptr);

    Field field() const { return m_field; }
    // The widget that takes the input (for tests, focus and the limit popover).
    QWidget* input() const;
    // The button that opens the date panel; none for other fields.
    QToolButton* dateButton() const { return m_dateButton; }

    // Shows the form's text or row and placeholder for this field.
    void showValue(const MetadataForm& form);
    // The source mark: a small sidecar sign in the field, with the sidecar's name in its
    // tooltip, while the value shown is one read from the XMP sidecar and not edited.
    void showSource(const MetadataForm& form);
    bool showsSidecarSource() const { return m_sourceShown; }
    QString sourceText() const { return m_sourceText; }
    // The edited mark: a 1-pixel border in the accent colour.
    void setEdited(bool edited);
    // Puts the popup back on a row without reporting it (a refused choice).
    void restoreRow(int row);

signals:
    void textEdited(Field field, const QString& text);
    void rowChosen(Field field, int row, int previousRow);
    void dateButtonClicked(Field field);

private:
    Field m_field;
    QLineEdit* m_line = nullptr;
    QPlainTextEdit* m_multiLine = nullptr;
    QComboBox* m_popup = nullptr;
    QToolButton* m_dateButton = nullptr;
    int m_shownRow = FormPopups::kBlankRow;
    QAction* m_sourceAction = nullptr;
    QString m_description;
    QString m_sourceText;
    bool m_fromSidecar = false;
    bool m_sourceShown = false;
    bool m_edited = false;
    void updateSourceMark();
};

} // namespace tagmoor
