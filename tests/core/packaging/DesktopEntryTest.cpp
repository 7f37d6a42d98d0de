// The launcher entry's MIME list decides which files a file manager offers to open with
// Tagmoor: every file name the photo list accepts must map to a listed type (or a type that
// one of the listed types is a parent of), as the desktop's MIME database sees it.
// image/tiff is listed too, for the RAW names the database does not know.
#include "workingset/SupportedExtensions.h"

#include <QFile>
#include <QMimeDatabase>

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

QStringList desktopEntryMimeTypes() {
    QFile file(QStringLiteral(TAGMOOR_TEST_DATA "/../../packaging/tagmoor.desktop"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QStringList types;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith("MimeType="))
            types = QString::fromUtf8(line.mid(9)).split(QLatin1Char(';'), Qt::SkipEmptyParts);
    }
    return types;
}

TEST(DesktopEntry, EveryAcceptedFileNameHasAListedMimeType) {
    const QStringList listed = desktopEntryMimeTypes();
    ASSERT_TRUE(listed.contains(QStringLiteral("image/tiff")));
    QMimeDatabase db;
    for (const QString& extension : supportedExtensions()) {
        if (extension == QLatin1String("photoslibrary"))
            continue; // a folder, added through the library screen
        const QList<QMimeType> types = db.mimeTypesForFileName(QStringLiteral("x.") + extension);
        // A name the database does not know is told by its content (TIFF for most RAW).
        if (types.isEmpty())
            continue;
        bool covered = false;
        QStringList seen;
        for (const QMimeType& type : types) {
            QStringList names = type.aliases() << type.name() << type.allAncestors();
            seen << type.name();
            for (const QString& name : names)
                covered = covered || (listed.contains(name) && name != "application/octet-stream");
        }
        EXPECT_TRUE(covered) << "." << extension.toStdString() << " is "
                             << seen.join(',').toStdString() << ", none of them listed";
    }
}

} // namespace
} // namespace tagmoor
