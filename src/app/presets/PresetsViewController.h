#pragma once

#include <QFrame>

class QListWidget;

namespace tagmoor {

class AppEvents;
class MetadataForm;
class PresetStore;

// The preset menu of the home screen: a small popup list with "New Configuration" first, the
// saved presets by name, and "Edit Presets..." last. Choosing a saved preset fills the home
// form with its values, edit flags and date rules; the two fixed rows post PresetsDetailsOTM,
// on which the preset panel opens (see PresetsDetailsViewController).
class PresetsViewController : public QFrame {
    Q_OBJECT
public:
    struct Objects {
        PresetStore& presets;
        AppEvents& events;
        MetadataForm& homeForm;
    };

    explicit PresetsViewController(const Objects& objects, QWidget* parent = nullptr);

    // Opens the list under `anchor`.
    void showAt(QWidget* anchor);
    // What a click on a row does; the popup closes first.
    void chooseRow(int row);

    QListWidget* tableView() const { return m_table; }

private:
    void reloadRows();

    Objects m_objects;
    QListWidget* m_table;
};

} // namespace tagmoor
