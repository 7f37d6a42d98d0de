#pragma once

#include "app/location/MapType.h"

#include <QWidget>

class QButtonGroup;

namespace tagmoor {

// The three map types side by side as one segmented control, in the order of MapType (button
// ids are their numbers). The first is selected.
class MapTypeSegment : public QWidget {
    Q_OBJECT
public:
    explicit MapTypeSegment(const QString& objectName, QWidget* parent = nullptr);
    QButtonGroup* group() const { return m_group; }
    MapType selectedType() const;

private:
    QButtonGroup* m_group;
};

} // namespace tagmoor
