#pragma once

#include <QWidget>

class QButtonGroup;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QScrollArea;

namespace tagmoor {

class AppEvents;
enum class Field;
class HomeSession;
class KeywordsMorePanel;
class MetadataForm;
class MetadataViewController;
class PresetStore;
class PresetsViewController;
class ProcessingControls;

// The middle of the home screen's side pane: the EXIF, IPTC, XMP and Keywords & More tabs with
// the count of marked photos, the editor (or, on the remove row, the clean boxes in its place), and
// the buttons under it: Location..., Reset All, Rename... and Presets....
class HomeEditorBox : public QWidget {
    Q_OBJECT
public:
    struct Objects {
        MetadataForm& form;
        AppEvents& events;
        PresetStore& presets;
        ProcessingControls& processing;
        HomeSession& session;
    };
    // The id of the Keywords & More tab, after the three of the form.
    static constexpr int kKeywordsTab = 3;

    explicit HomeEditorBox(const Objects& objects, QWidget* parent = nullptr);

    // The tab of the EXIF, IPTC or XMP editor: 0, 1, 2; or Keywords & More (kKeywordsTab).
    void showTab(int editor);
    void setMarkedSummary(int marked, int count);
    // A control at the end of the tab row (the preview's fold button).
    void addToTabRow(QWidget* widget);
    // Shows the field in its tab and gives it the focus; a date field's panel opens.
    void openField(Field field);
    void openPresets();
    void focusFirstField();
    // The remove row shows the clean boxes instead of the editor.
    void showRemoving(bool removing);
    // The controls that are on only while a photo is marked, and those of them that are off
    // on the remove row as well.
    QList<QWidget*> batchControls() const;
    QList<QWidget*> editingOnlyControls() const;

signals:
    void tabClicked(int editor);
    void locationClicked();
    void resetAllClicked();
    void renameClicked();

private:
    QLayout* makeTabs();
    QLayout* makeButtons();

    Objects m_objects;
    QButtonGroup* m_tabs;
    QList<QWidget*> m_tabButtons;
    QLabel* m_markedSummary;
    QHBoxLayout* m_tabRow = nullptr;
    MetadataViewController* m_editor;
    QScrollArea* m_keywordsPage;
    KeywordsMorePanel* m_keywords;
    bool m_removing = false;
    QPushButton* m_gps;
    QPushButton* m_resetAll;
    QPushButton* m_rename;
    QPushButton* m_preset;
    PresetsViewController* m_presetsMenu = nullptr;
};

} // namespace tagmoor
