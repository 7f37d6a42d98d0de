#pragma once

#include <QAbstractTableModel>

namespace tagmoor {

class WorkingListModel;
struct CGImageProperties;

// The columns of the photo table. The name column is the list model's own item (check box,
// picture, name and "W x H - size"); the others are facts of the record already read, so
// that showing or sorting them never opens a file.
enum class PhotoColumn { Name, Edited, Size, Dimensions, CaptureDate, Camera };
inline constexpr int kPhotoColumnCount = 6;

// The working list as the table shows it: row r is record r, one column per PhotoColumn.
// SortRole gives each column's value in a form that sorts (sizes, pixel counts and dates as
// numbers).
class PhotoTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    static constexpr int SortRole = Qt::UserRole + 100;

    explicit PhotoTableModel(WorkingListModel& list, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // The facts of the other columns, as shown; empty when the record does not hold them.
    static QString dimensionsText(const CGImageProperties& record);
    static QString captureDateText(const CGImageProperties& record);
    static QString cameraText(const CGImageProperties& record);

private:
    void listDataChanged(const QModelIndex& first, const QModelIndex& last,
                         const QList<int>& roles);
    QVariant factData(PhotoColumn column, const CGImageProperties& record, int role) const;

    WorkingListModel& m_list;
};

} // namespace tagmoor
