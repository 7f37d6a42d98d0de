#pragma once

#include <QDialog>
#include <QList>
#include <QPair>

namespace tagmoor {

// "Get Info": a small window with the facts of one photo file, label beside value.
class FileInfoDialog : public QDialog {
    Q_OBJECT
public:
    using Facts = QList<QPair<QString, QString>>;

    FileInfoDialog(const QString& path, const Facts& extraFacts, QWidget* parent = nullptr);

    // The file's own facts: name, kind, size, folder, dates, permissions.
    static Facts fileFacts(const QString& path);
};

} // namespace tagmoor
