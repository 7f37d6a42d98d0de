#include "workingset/WorkingListModel.h"

#include "workingset/FileSizeText.h"
#include "workingset/WorkingSet.h"

#include <QFileInfo>

namespace tagmoor {

WorkingListModel::WorkingListModel(WorkingSet& workingSet, QObject* parent)
    : QAbstractListModel(parent), m_set(workingSet) {
    connect(&m_set, &WorkingSet::imagesAboutToBeAppended, this,
            [this](int first, int last) { beginInsertRows({}, first, last); });
    connect(&m_set, &WorkingSet::imagesAppended, this, [this] { endInsertRows(); });
    connect(&m_set, &WorkingSet::imagesAboutToBeReset, this, [this] { beginResetModel(); });
    connect(&m_set, &WorkingSet::imagesReset, this, [this] { endResetModel(); });
    const auto changed = [this](int first, int last) {
        emit dataChanged(index(first), index(last));
    };
    connect(&m_set, &WorkingSet::selectionChanged, this, [this](int first, int last) {
        emit dataChanged(index(first), index(last), {Qt::CheckStateRole, MarkedRole, EditedRole});
    });
    connect(&m_set, &WorkingSet::imagesChanged, this, changed);
}

int WorkingListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_set.count();
}

QString WorkingListModel::fileName(const CGImageProperties& record) {
    return QFileInfo(record.path()).fileName();
}

QString WorkingListModel::subtitle(const CGImageProperties& record) {
    const qint64 size = record.fileSize.wholeNumber().value_or(0);
    return QStringLiteral("%1 x %2 - %3")
        .arg(record.pixelWidth.wholeNumber().value_or(0))
        .arg(record.pixelHeight.wholeNumber().value_or(0))
        .arg(fileSizeText(std::uint64_t(std::max<qint64>(0, size))));
}

QVariant WorkingListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_set.count())
        return {};
    const CGImageProperties& record = m_set.workingImages().at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return fileName(record);
    case Qt::ToolTipRole:
    case PathRole:
        return record.path();
    case UrlRole:
        return record.url ? *record.url : QUrl();
    case SubtitleRole:
        return subtitle(record);
    case Qt::CheckStateRole:
        return record.isSelected ? Qt::Checked : Qt::Unchecked;
    case MarkedRole:
        return record.isSelected;
    case EditedRole:
        return record.isSelected && m_editsPending;
    default:
        return {};
    }
}

void WorkingListModel::setEditsPending(bool pending) {
    if (pending == m_editsPending)
        return;
    m_editsPending = pending;
    if (m_set.count() > 0)
        emit dataChanged(index(0), index(m_set.count() - 1), {EditedRole});
}

bool WorkingListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || (role != Qt::CheckStateRole && role != MarkedRole))
        return false;
    const bool on = role == MarkedRole ? value.toBool() : value.toInt() == int(Qt::Checked);
    return m_set.setSelected(index.row(), on);
}

Qt::ItemFlags WorkingListModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable |
           Qt::ItemNeverHasChildren;
}

QHash<int, QByteArray> WorkingListModel::roleNames() const {
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert(PathRole, "path");
    names.insert(UrlRole, "url");
    names.insert(SubtitleRole, "subtitle");
    names.insert(MarkedRole, "marked");
    names.insert(EditedRole, "edited");
    return names;
}

} // namespace tagmoor
