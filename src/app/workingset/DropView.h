#pragma once

#include <QFrame>

class QMimeData;

namespace tagmoor {

class AppEvents;

// The drop target of the add screen: takes file and folder names dragged from a file viewer
// and posts them as DropViewOTM. It looks at nothing else in the drag.
class DropView : public QFrame {
    Q_OBJECT
public:
    explicit DropView(AppEvents& events, QWidget* parent = nullptr);

    // The local paths of a drag, or nothing when the drag carries no file names.
    static QStringList pathsOf(const QMimeData* data);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void setHovered(bool on);

    AppEvents& m_events;
    bool m_hovered = false;
};

} // namespace tagmoor
