#pragma once

#include <QWidget>

class QAbstractItemView;
class QButtonGroup;
class QCheckBox;
class QLabel;
class QPushButton;
class QStackedWidget;
class QToolButton;

namespace tagmoor {

class PhotoGridView;
class Settings;
class PhotoTableView;
class ThumbnailProvider;
class WorkingListModel;

// The list side of the home screen: its bar (grid or table, Select All, the count, Add More,
// Remove) over the grid and the table of one model. It shows what it is told and passes the
// clicks on as signals.
class HomeListPane : public QWidget {
    Q_OBJECT
public:
    HomeListPane(WorkingListModel& model, ThumbnailProvider& thumbnails, QWidget* parent = nullptr);

    // 0 grid, 1 table.
    int segmentIndex() const;
    void showSegment(int index);
    void setTotal(int count);
    void setSelectAllChecked(bool on);
    bool isSelectAllChecked() const;
    void setAddMoreEnabled(bool on);
    bool isRemoveEnabled() const;
    void clearViewSelection();
    void repaintViews();
    // The table keeps its column choices in the settings.
    void rememberColumnsIn(Settings& settings);
    // The grid and the table, for what is done to both alike.
    QList<QAbstractItemView*> views() const;
    QPushButton* addMoreButton() const { return m_addMore; }
    // The controls that are on only while a photo is marked.
    QList<QWidget*> batchControls() const;

signals:
    void segmentClicked(int index);
    void selectAllClicked(bool on);
    void addMoreClicked();
    void removeClicked();

private:
    QWidget* makeTopBar();

    QButtonGroup* m_segment;
    QToolButton* m_gridButton;
    QToolButton* m_tableButton;
    QCheckBox* m_selectAll;
    QLabel* m_total;
    QPushButton* m_addMore;
    QPushButton* m_remove;
    QStackedWidget* m_views;
    PhotoGridView* m_grid;
    PhotoTableView* m_table;
};

} // namespace tagmoor
