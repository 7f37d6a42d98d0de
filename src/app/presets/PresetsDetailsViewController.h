#pragma once

#include <QWidget>

class QButtonGroup;
class QHBoxLayout;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;
class QVBoxLayout;

namespace tagmoor {

class AppEvents;
class MetadataForm;
class MetadataViewController;
class PresetStore;
class UserPrompt;
class WorkingSet;
struct EditorState;
struct PresetsMenuChoice;

// The preset panel that the root shows at index 2: the saved presets on the left (add,
// rename in place, remove), and on the right a second editor form that holds the values and
// date rules of the chosen preset. Save stores the form into that preset; Cancel goes back to
// the home screen and keeps nothing of the form.
class PresetsDetailsViewController : public QWidget {
    Q_OBJECT
public:
    struct Objects {
        PresetStore& presets;
        AppEvents& events;
        UserPrompt& prompt;
        const WorkingSet& workingSet;
        EditorState& editorState;
    };

    explicit PresetsDetailsViewController(const Objects& objects, QWidget* parent = nullptr);

    // Called by the root each time the panel comes up: reloads the list, then adds a fresh
    // preset (opened through "New Configuration") or selects the row in work.
    void viewWillAppear();

    void addPreset();
    void removePreset();
    void clickedSave();
    void clickedCancel();
    // 0 EXIF, 1 IPTC, 2 XMP.
    void clickedEditor(int editor);
    // Adds a preset with `name`, or the proposed name when it is empty; gives its row.
    int addNewPresetWithName(const QString& name);
    // Renaming a row ends: the name is checked and stored, or the alert shows and the old
    // name comes back.
    void renameRow(int row, const QString& name);

    bool isNewPreset() const { return m_isNewPreset; }
    void setNewPreset(bool on) { m_isNewPreset = on; }
    bool isPresetLoaded() const { return m_isPresetLoaded; }
    int indexActualPreset() const { return m_indexActualPreset; }

    QListWidget* tableView() const { return m_table; }
    QPushButton* btnAdd() const { return m_add; }
    QPushButton* btnRemove() const { return m_remove; }
    QPushButton* btnSave() const { return m_save; }
    QPushButton* btnCancel() const { return m_cancel; }
    MetadataForm& form() const { return *m_form; }
    MetadataViewController* editor() const { return m_editor; }

private:
    // The builders of the panel, called by the constructor.
    void setUpControls();
    QVBoxLayout* makeListSide();
    QVBoxLayout* makeFormSide();
    QHBoxLayout* makePanes();
    QHBoxLayout* makeBottomRow();
    void connectControls();

    void reloadTable();
    // The list changed in another program: the table follows, and the preset on display
    // stays chosen (found by its name) with what the form holds.
    void followChangesElsewhere();
    void selectRow(int row);
    void selectionChanged();
    void itemChanged(QListWidgetItem* item);
    void presetsDetailsRequested(const PresetsMenuChoice& choice);

    Objects m_objects;
    MetadataForm* m_form;
    MetadataViewController* m_editor;
    QLabel* m_title;
    QListWidget* m_table;
    QPushButton* m_add;
    QPushButton* m_remove;
    QPushButton* m_save;
    QPushButton* m_cancel;
    QButtonGroup* m_tabs;
    QLabel* m_hint;
    bool m_isNewPreset = false;
    bool m_isPresetLoaded = false;
    bool m_isLoaded = false;
    bool m_reloading = false;
    int m_indexActualPreset = 0;
};

} // namespace tagmoor
