#pragma once

#include "processing/RenamePanel.h"

#include <QDialog>

class QComboBox;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace tagmoor {

class Settings;
class UserPrompt;

// The rename sheet: five exclusive options with their inputs and examples, over the
// application's rename rule, which RenamePanel edits live. Save checks the input (and asks
// about overwriting); Close brings the rule back to what it was at the opening.
class RenameViewController : public QDialog {
    Q_OBJECT
public:
    RenameViewController(Rename& renameSettings, bool& overwriteExisting, const Settings& settings,
                         UserPrompt& prompt, QWidget* parent = nullptr);

    // viewWillAppear: the rule as it stands; examples from the list's first photo.
    void showFor(const QString& firstPhotoPath);

protected:
    void reject() override { clickedClose(); }

private:
    // The builders of the sheet, called in this order by the constructor.
    void makeOptions();
    void fillChoices();
    void connectInputs();
    QGridLayout* makeGrid();
    QLabel* makeTitle();
    QHBoxLayout* makeButtons();

    void clickOption(RenamePanel::Option option);
    void takeShownValues(RenamePanel::Option option);
    void clickNext();
    void clickedClose();
    void resetAllComponents();
    void refreshControls();
    void refreshExamples();

    RenamePanel m_panel;
    bool& m_overwriteExisting;
    const Settings& m_settings;
    UserPrompt& m_prompt;
    QRadioButton* m_options[5] = {};
    QLineEdit* m_addText;
    QComboBox* m_addPosition;
    QLineEdit* m_find;
    QLineEdit* m_replaceWith;
    QComboBox* m_nameFormat;
    QComboBox* m_where;
    QLineEdit* m_customFormat;
    QLineEdit* m_startNumber;
    QComboBox* m_minDigits;
    QLabel* m_addExample;
    QLabel* m_replaceExample;
    QLabel* m_formatExample;
    QLineEdit* m_capturePattern;
    QLabel* m_captureExample;
};

} // namespace tagmoor
