#pragma once

#include "app/editor/DateConfigurationPanel.h"
#include "editor/FormSections.h"
#include "editor/PerField.h"

#include <QPointer>
#include <QWidget>

class QFrame;
class QLabel;
class QScrollArea;

namespace tagmoor {

class AppEvents;
class FieldControl;
class FormSectionView;
class MetadataForm;

// The editor form: three boxes (EXIF, IPTC, XMP), one visible at a time, each made of the
// sections of the form table. It can stand twice: on the home screen and in the preset panel.
// It shows what its MetadataForm holds and forwards every key stroke and choice to it.
class MetadataViewController : public QWidget {
    Q_OBJECT
public:
    MetadataViewController(MetadataForm& form, AppEvents& events, QWidget* parent = nullptr);

    MetadataForm& form() const { return m_form; }

    // Shows the box of that family, hides the other two, scrolls to its top.
    void showEditor(Editor editor);
    Editor currentEditor() const { return m_current; }
    // Hides the section titles, so the sub-forms move up.
    void setHideGeneral(bool hide);
    bool isHideGeneral() const { return m_hideGeneral; }

    FieldControl* control(Field field) const { return m_controls[field]; }
    // Shows the box that holds the field, scrolls it into view and gives it the focus.
    void reveal(Field field);
    QWidget* box(Editor editor) const;
    // The limit popover, while it shows a message.
    QFrame* popoverDetails() const { return m_popover; }
    QLabel* popoverMessage() const { return m_popoverMessage; }
    // The date panel while it is open.
    DateConfigurationPanel* datePanel() const { return m_datePanel; }

private:
    void refreshAll();
    void refreshField(Field field);
    void highlightEditedFields();
    void textEdited(Field field, const QString& text);
    void rowChosen(Field field, int row, int previousRow);
    void dateButtonClicked(Field field);
    void showLimitMessage(FieldControl* control, const QString& message);

    MetadataForm& m_form;
    QScrollArea* m_scroll;
    QWidget* m_boxes[3] = {};
    QLabel* m_boxTitles[3] = {};
    QList<FormSectionView*> m_sections;
    // Every field has its control once the sections are built.
    PerField<FieldControl*> m_controls;
    QFrame* m_popover;
    QLabel* m_popoverMessage;
    QPointer<DateConfigurationPanel> m_datePanel;
    Editor m_current = Editor::exif;
    bool m_hideGeneral = false;
};

} // namespace tagmoor
