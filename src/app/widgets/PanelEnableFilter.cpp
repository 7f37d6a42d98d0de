#include "app/widgets/PanelEnableFilter.h"

#include "workingset/FileSizeText.h"

#include <QCollator>
#include <QFileInfo>
#include <QFileSystemModel>

namespace tagmoor {

PanelEnableFilter::PanelEnableFilter(const QStringList& extensions, bool filesEnabled,
                                     QObject* parent)
    : QSortFilterProxyModel(parent), m_extensions(extensions), m_filesEnabled(filesEnabled) {}

void PanelEnableFilter::setOnlyEnabledFolder(const QString& folder) {
    m_onlyFolder = folder.isEmpty() ? QString() : QFileInfo(folder).canonicalFilePath();
    invalidate();
}

bool PanelEnableFilter::shouldEnable(const QFileInfo& info, const QStringList& extensions,
                                     bool filesEnabled) {
    if (info.isDir())
        return true;
    if (!filesEnabled)
        return false;
    return extensions.isEmpty() || extensions.contains(info.suffix().toLower());
}

Qt::ItemFlags PanelEnableFilter::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = QSortFilterProxyModel::flags(index);
    const auto* files = qobject_cast<const QFileSystemModel*>(sourceModel());
    if (!files || !index.isValid())
        return flags;
    const QFileInfo info = files->fileInfo(mapToSource(index));
    const bool outsideTheOne = !m_onlyFolder.isEmpty() && info.canonicalFilePath() != m_onlyFolder;
    if (outsideTheOne || !shouldEnable(info, m_extensions, m_filesEnabled))
        flags &= ~(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    return flags;
}

QVariant PanelEnableFilter::data(const QModelIndex& index, int role) const {
    const auto* files = qobject_cast<const QFileSystemModel*>(sourceModel());
    if (files && role == Qt::DisplayRole && index.column() == 1) {
        const QModelIndex source = mapToSource(index);
        if (!files->isDir(source))
            return fileSizeText(std::uint64_t(std::max<qint64>(0, files->size(source))));
    }
    return QSortFilterProxyModel::data(index, role);
}

} // namespace tagmoor

namespace tagmoor {

bool PanelEnableFilter::lessThan(const QModelIndex& left, const QModelIndex& right) const {
    const auto* files = qobject_cast<const QFileSystemModel*>(sourceModel());
    if (!files || left.column() != 0)
        return QSortFilterProxyModel::lessThan(left, right);
    const bool leftDir = files->isDir(left);
    const bool rightDir = files->isDir(right);
    if (leftDir != rightDir)
        return leftDir;
    static const QCollator collator = [] {
        QCollator c;
        c.setNumericMode(true);
        c.setCaseSensitivity(Qt::CaseInsensitive);
        return c;
    }();
    return collator.compare(files->fileName(left), files->fileName(right)) < 0;
}

} // namespace tagmoor
