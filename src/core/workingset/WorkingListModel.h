#pragma once

#include <QAbstractListModel>

namespace tagmoor {

class WorkingSet;
struct CGImageProperties;

// One model of the working list for both the thumbnail grid and the table. Row r is record
// r of workingImages. The check state is the record's mark (isSelected); display is the file
// name; SubtitleRole is "W x H - size". Pictures are not here: views ask for them lazily.
class WorkingListModel : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role {
        PathRole = Qt::UserRole + 1, // local path of the record's url
        UrlRole,                     // the QUrl
        SubtitleRole,                // "W x H - size"
        MarkedRole,                  // bool, same as the check state
        EditedRole,                  // bool: marked while the editor holds edits for a run
    };

    explicit WorkingListModel(WorkingSet& workingSet, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QHash<int, QByteArray> roleNames() const override;

    // The table's second line: width " x " height " - " size text. Missing values read as 0.
    static QString subtitle(const CGImageProperties& record);
    static QString fileName(const CGImageProperties& record);

    WorkingSet& workingSet() const { return m_set; }

    // Whether the editor holds edits: they go to every marked photo, which EditedRole shows.
    void setEditsPending(bool pending);
    bool editsPending() const { return m_editsPending; }

private:
    WorkingSet& m_set;
    bool m_editsPending = false;
};

} // namespace tagmoor
