#pragma once

#include <QList>
#include <QWidget>

class QLabel;

namespace tagmoor {

class FieldControl;
struct FormSection;

// One titled section of the editor form ("Camera Settings"): its title and one row of label
// and control per field of the section's table.
class FormSectionView : public QWidget {
    Q_OBJECT
public:
    FormSectionView(const FormSection& section, QWidget* parent = nullptr);

    QLabel* title() const { return m_title; }
    const QList<FieldControl*>& controls() const { return m_controls; }

private:
    QLabel* m_title;
    QList<FieldControl*> m_controls;
};

} // namespace tagmoor
