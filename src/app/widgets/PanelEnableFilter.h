#pragma once

#include <QSortFilterProxyModel>
#include <QStringList>

class QFileInfo;

namespace tagmoor {

// The enable filter of the open panels: folders are always enabled (the user may pick them or
// walk into them); a file is enabled when its lower-cased extension is in the list. With an
// empty list every file is enabled; in a folder-only panel no file is.
class PanelEnableFilter : public QSortFilterProxyModel {
    Q_OBJECT
public:
    PanelEnableFilter(const QStringList& extensions, bool filesEnabled, QObject* parent = nullptr);
    // Greys every entry but this folder (none: no such limit).
    void setOnlyEnabledFolder(const QString& folder);

    static bool shouldEnable(const QFileInfo& info, const QStringList& extensions,
                             bool filesEnabled);

    Qt::ItemFlags flags(const QModelIndex& index) const override;
    // The size column reads as sizes do everywhere else in the program.
    QVariant data(const QModelIndex& index, int role) const override;

protected:
    // Folders before files, then names in the order a person expects.
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    QStringList m_extensions;
    bool m_filesEnabled;
    QString m_onlyFolder; // canonical path; empty when any folder may be chosen
};

} // namespace tagmoor
