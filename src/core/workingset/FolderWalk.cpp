#include "workingset/FolderWalk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <QSet>
#include <algorithm>

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace tagmoor {

namespace {

// Folder extensions that the platform presents as single documents. Only an exact,
// lowercased match counts: an ordinary folder such as "2024.05 Trip" stays a folder.
const QSet<QString>& packageExtensions() {
    static const QSet<QString> set{"photoslibrary",
                                   "photolibrary",
                                   "migratedphotolibrary",
                                   "aplibrary",
                                   "app",
                                   "bundle",
                                   "framework",
                                   "plugin",
                                   "kext",
                                   "pkg",
                                   "mpkg",
                                   "rtfd",
                                   "fcpbundle",
                                   "imovielibrary",
                                   "tvlibrary",
                                   "logicx",
                                   "band",
                                   "pages",
                                   "numbers",
                                   "key"};
    return set;
}

// Reads the names of one folder, but for hidden ones. A name that is no valid UTF-8 has no
// text that names the file again; such a file or folder goes to `leftOut`, and so does the
// folder itself when it cannot be read.
QStringList namesIn(const QString& folder, QList<LeftOutEntry>& leftOut) {
    QStringList names;
    QList<LeftOutEntry> unnamed;
    DIR* dir = ::opendir(QFile::encodeName(folder).constData());
    if (!dir) {
        // A folder that vanished has nothing to tell; one that is closed to us is told.
        if (errno != ENOENT)
            leftOut.append({folder, true,
                            QStringLiteral("the folder cannot be read (%1)")
                                .arg(QString::fromLocal8Bit(std::strerror(errno)))});
        return names;
    }
    const QString prefix = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
    while (const dirent* entry = ::readdir(dir)) {
        const QByteArray raw(entry->d_name);
        if (raw.startsWith('.'))
            continue;
        const QString name = QFile::decodeName(raw);
        if (QFile::encodeName(name) == raw) {
            names.append(name);
            continue;
        }
        struct stat st {};
        if (::fstatat(::dirfd(dir), entry->d_name, &st, AT_SYMLINK_NOFOLLOW) != 0)
            continue;
        const bool isFolder = S_ISDIR(st.st_mode);
        if (!isFolder && ::fstatat(::dirfd(dir), entry->d_name, &st, 0) != 0)
            continue;
        if (!isFolder && !S_ISREG(st.st_mode))
            continue;
        const QString shown = displayFileName(raw);
        if ((isFolder && isPackageFolderName(shown)) || isExcludedMediaPath(prefix + shown))
            continue;
        unnamed.append({prefix + shown, isFolder,
                        isFolder ? QStringLiteral("the folder name is not valid UTF-8")
                                 : QStringLiteral("the file name is not valid UTF-8")});
    }
    ::closedir(dir);
    std::sort(unnamed.begin(), unnamed.end(),
              [](const LeftOutEntry& a, const LeftOutEntry& b) { return a.path < b.path; });
    leftOut.append(unnamed);
    return names;
}

void walkInto(const QString& folder, const std::atomic_bool* stop, FolderWalkResult& out) {
    // Only the names are gathered and sorted (as QDir's name order does, case-sensitively):
    // a folder of tens of thousands of photos is never held as a list of file infos.
    QStringList names = namesIn(folder, out.leftOut);
    std::sort(names.begin(), names.end(), [](const QString& a, const QString& b) {
        return a.compare(b, Qt::CaseSensitive) < 0;
    });
    const QString prefix = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
    for (const QString& name : std::as_const(names)) {
        if (stop && stop->load(std::memory_order_relaxed))
            return;
        const QFileInfo entry(prefix + name);
        const QString path = entry.absoluteFilePath();
        if (entry.isDir()) {
            if (entry.isSymLink() || isPackageFolderName(name) || isExcludedMediaPath(path))
                continue;
            walkInto(path, stop, out);
        } else if (entry.isFile() && !isExcludedMediaPath(path)) {
            out.files.append(path);
        }
    }
}

} // namespace

bool isPackageFolderName(const QString& name) {
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0 || dot == name.size() - 1)
        return false;
    return packageExtensions().contains(name.mid(dot + 1).toLower());
}

bool isExcludedMediaPath(const QString& absolutePath) {
    const QString lower = absolutePath.toLower();
    return lower.contains(QLatin1String("/itunes")) ||
           lower.contains(QLatin1String("photo booth library"));
}

FolderWalkResult walkFolder(const QString& folder, const std::atomic_bool* stop) {
    FolderWalkResult result;
    const QFileInfo root(folder);
    if (!root.isDir() || !QDir(folder).isReadable()) {
        result.failed = true;
        return result;
    }
    if (isExcludedMediaPath(root.absoluteFilePath()))
        return result;
    walkInto(root.absoluteFilePath(), stop, result);
    return result;
}

QString displayFileName(const QByteArray& name) {
    QString text;
    qsizetype at = 0;
    while (at < name.size()) {
        // The longest run from here that is valid UTF-8 (a character is at most four bytes).
        qsizetype length = 0;
        for (qsizetype n = 1; n <= 4 && at + n <= name.size(); ++n) {
            const QByteArray piece = name.mid(at, n);
            if (QString::fromUtf8(piece).toUtf8() == piece) {
                length = n;
                break;
            }
        }
        if (length == 0) {
            text += QStringLiteral("\\x%1").arg(uchar(name.at(at)), 2, 16, QLatin1Char('0'));
            ++at;
        } else {
            text += QString::fromUtf8(name.mid(at, length));
            at += length;
        }
    }
    return text;
}

} // namespace tagmoor
