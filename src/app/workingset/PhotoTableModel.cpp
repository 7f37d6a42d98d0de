#include "app/workingset/PhotoTableModel.h"

#include "editor/FieldDisplay.h"
#include "model/FormFieldTable.h"
#include "workingset/FileSizeText.h"
#include "workingset/WorkingListModel.h"
#include "workingset/WorkingSet.h"

#include <QLocale>

#include <limits>

namespace tagmoor {

namespace {

QString textOf(const PropertyValue& value) {
    return value.text().value_or(QString()).trimmed();
}

// The capture date as the record holds it, read; an invalid date when there is none.
QDateTime captureDate(const CGImageProperties& record) {
    if (!record.exifProperties)
        return {};
    const PropertyValue& value = record.exifProperties->dateTimeOriginal;
    if (const auto date = value.date())
        return *date;
    return QDateTime::fromString(textOf(value), QStringLiteral("yyyy:MM:dd HH:mm:ss"));
}

// The capture date as a number that sorts; the smallest when the record holds none.
qint64 captureSortKey(const CGImageProperties& record) {
    const QDateTime date = captureDate(record);
    return date.isValid() ? date.toMSecsSinceEpoch() : std::numeric_limits<qint64>::min();
}

} // namespace

PhotoTableModel::PhotoTableModel(WorkingListModel& list, QObject* parent)
    : QAbstractTableModel(parent), m_list(list) {
    connect(&m_list, &QAbstractItemModel::rowsAboutToBeInserted, this,
            [this](const QModelIndex&, int first, int last) { beginInsertRows({}, first, last); });
    connect(&m_list, &QAbstractItemModel::rowsInserted, this, [this] { endInsertRows(); });
    connect(&m_list, &QAbstractItemModel::rowsAboutToBeRemoved, this,
            [this](const QModelIndex&, int first, int last) { beginRemoveRows({}, first, last); });
    connect(&m_list, &QAbstractItemModel::rowsRemoved, this, [this] { endRemoveRows(); });
    connect(&m_list, &QAbstractItemModel::modelAboutToBeReset, this, [this] { beginResetModel(); });
    connect(&m_list, &QAbstractItemModel::modelReset, this, [this] { endResetModel(); });
    connect(&m_list, &QAbstractItemModel::dataChanged, this, &PhotoTableModel::listDataChanged);
}

void PhotoTableModel::listDataChanged(const QModelIndex& first, const QModelIndex& last,
                                      const QList<int>& roles) {
    // A mark changes the name column's box and the edited column, nothing else: a table
    // sorted by another column need not look at the rows again.
    static const QList<int> kMarkRoles{Qt::CheckStateRole, WorkingListModel::MarkedRole,
                                       WorkingListModel::EditedRole};
    const bool marksOnly =
        !roles.isEmpty() &&
        std::all_of(roles.begin(), roles.end(), [](int role) { return kMarkRoles.contains(role); });
    if (!marksOnly) {
        emit dataChanged(index(first.row(), 0), index(last.row(), kPhotoColumnCount - 1), roles);
        return;
    }
    QList<int> edited{Qt::DisplayRole, Qt::ToolTipRole, SortRole};
    if (!roles.contains(WorkingListModel::EditedRole))
        edited.clear();
    if (roles.contains(Qt::CheckStateRole))
        emit dataChanged(index(first.row(), int(PhotoColumn::Name)),
                         index(last.row(), int(PhotoColumn::Name)), roles);
    if (!edited.isEmpty())
        emit dataChanged(index(first.row(), int(PhotoColumn::Edited)),
                         index(last.row(), int(PhotoColumn::Edited)), edited);
}

int PhotoTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_list.rowCount();
}

int PhotoTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kPhotoColumnCount;
}

QString PhotoTableModel::dimensionsText(const CGImageProperties& record) {
    const auto width = record.pixelWidth.wholeNumber();
    const auto height = record.pixelHeight.wholeNumber();
    if (!width || !height || *width <= 0 || *height <= 0)
        return {};
    return QStringLiteral("%1 x %2").arg(*width).arg(*height);
}

// Shown as the user's language writes dates; a text that is no date stays as it is.
QString PhotoTableModel::captureDateText(const CGImageProperties& record) {
    const QDateTime date = captureDate(record);
    if (date.isValid())
        return QLocale().toString(date, QLocale::ShortFormat);
    return FieldDisplay::text(record, formField(Field::DateTimeOriginal));
}

QString PhotoTableModel::cameraText(const CGImageProperties& record) {
    if (!record.tiffProperties)
        return {};
    const QString make = textOf(record.tiffProperties->make);
    const QString model = textOf(record.tiffProperties->model);
    // Most makers repeat their name in the model ("Canon" and "Canon PowerShot S5 IS").
    if (make.isEmpty() || model.startsWith(make, Qt::CaseInsensitive))
        return model;
    if (model.isEmpty())
        return make;
    return make + QLatin1Char(' ') + model;
}

QVariant PhotoTableModel::factData(PhotoColumn column, const CGImageProperties& record,
                                   int role) const {
    const bool sorting = role == SortRole;
    switch (column) {
    case PhotoColumn::Name:
        return {};
    case PhotoColumn::Edited: {
        const bool edited = record.isSelected && m_list.editsPending();
        if (sorting)
            return int(edited);
        if (role == Qt::ToolTipRole && edited)
            return tr("The edits of the editor will be written to this photo");
        return role == Qt::DisplayRole && edited ? QStringLiteral("\u270E") : QVariant();
    }
    case PhotoColumn::Size: {
        const auto bytes = record.fileSize.wholeNumber();
        if (sorting)
            return bytes.value_or(-1);
        return bytes ? fileSizeText(std::uint64_t(std::max<qint64>(0, *bytes))) : QString();
    }
    case PhotoColumn::Dimensions:
        if (sorting)
            return record.pixelWidth.wholeNumber().value_or(0) *
                   record.pixelHeight.wholeNumber().value_or(0);
        return dimensionsText(record);
    case PhotoColumn::CaptureDate:
        if (sorting)
            return captureSortKey(record);
        return captureDateText(record);
    case PhotoColumn::Camera:
        return cameraText(record);
    }
    return {};
}

QVariant PhotoTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_list.rowCount())
        return {};
    const auto column = PhotoColumn(index.column());
    const QModelIndex item = m_list.index(index.row());
    if (column == PhotoColumn::Name)
        return role == SortRole ? item.data(Qt::DisplayRole) : item.data(role);
    if (role == WorkingListModel::PathRole || role == WorkingListModel::UrlRole)
        return item.data(role);
    if (role == Qt::TextAlignmentRole)
        return column == PhotoColumn::Size
                   ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                   : QVariant(column == PhotoColumn::Edited ? Qt::AlignCenter
                                                            : Qt::AlignLeft | Qt::AlignVCenter);
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != SortRole)
        return {};
    const CGImageProperties& record = m_list.workingSet().workingImages().at(index.row());
    return factData(column, record, role);
}

bool PhotoTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || PhotoColumn(index.column()) != PhotoColumn::Name)
        return false;
    return m_list.setData(m_list.index(index.row()), value, role);
}

Qt::ItemFlags PhotoTableModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    if (PhotoColumn(index.column()) == PhotoColumn::Name)
        return m_list.flags(m_list.index(index.row()));
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

QVariant PhotoTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= kPhotoColumnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    const auto column = PhotoColumn(section);
    if (role == Qt::ToolTipRole && column == PhotoColumn::Edited)
        return tr("Photos the edits of the editor will be written to");
    if (role != Qt::DisplayRole)
        return {};
    switch (column) {
    case PhotoColumn::Name:
        return tr("Name");
    case PhotoColumn::Edited:
        return tr("Edited");
    case PhotoColumn::Size:
        return tr("Size");
    case PhotoColumn::Dimensions:
        return tr("Dimensions");
    case PhotoColumn::CaptureDate:
        return tr("Capture Date");
    case PhotoColumn::Camera:
        return tr("Camera");
    }
    return {};
}

} // namespace tagmoor
