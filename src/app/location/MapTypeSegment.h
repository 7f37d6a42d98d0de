#pragma once

#include <QWidget>

class QButtonGroup;

namespace tagmoor {

// The three map types side by side as one segmented control: 0 Standard, 1 Satellite,
// 2 Hybrid. The first is selected.
class MapTypeSegment : public QWidget {
    Q_OBJECT
public:
    explicit MapTypeSegment(const QString& objectName, QWidget* parent = nullptr);
    QButtonGroup* group() const { return m_group; }
    int selectedSegment() const;

private:
    QButtonGroup* m_group;
};

} // namespace tagmoor
