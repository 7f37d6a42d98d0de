#include "workingset/FolderWalk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <QSet>

#include <algorithm>
#include <vector>

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

// The names of one folder as UTF-8, one after another in one block: a folder of a hundred
// thousand photos is not held as a hundred thousand strings.
struct FolderNames {
    QByteArray bytes;
    std::vector<qsizetype> ends;

    qsizetype size() const { return qsizetype(ends.size()); }
    QByteArrayView at(qsizetype i) const {
        const qsizetype begin = i == 0 ? 0 : ends[std::size_t(i - 1)];
        return QByteArrayView(bytes.constData() + begin, ends[std::size_t(i)] - begin);
    }
    void append(QByteArrayView name) {
        bytes.append(name);
        ends.push_back(bytes.size());
    }
};

// Whether the UTF-8 name `a` comes before `b` in QString's case-sensitive order, which is the
// order of UTF-16 code units. Byte order is code point order; the two differ only where one
// name has a character above U+FFFF (a surrogate pair, D800..DFFF, in UTF-16) and the other
// one in U+E000..U+FFFF at the same place. Both names are valid UTF-8, so the first byte that
// differs is the first byte of a character in both when either is a lead byte.
bool utf16Less(QByteArrayView a, QByteArrayView b) {
    const qsizetype n = std::min(a.size(), b.size());
    for (qsizetype i = 0; i < n; ++i) {
        const uchar x = uchar(a[i]);
        const uchar y = uchar(b[i]);
        if (x == y)
            continue;
        const auto beyondBmp = [](uchar c) { return c >= 0xF0; };
        const auto topOfBmp = [](uchar c) { return c == 0xEE || c == 0xEF; };
        if (beyondBmp(x) && topOfBmp(y))
            return true;
        if (topOfBmp(x) && beyondBmp(y))
            return false;
        return x < y;
    }
    return a.size() < b.size();
}

// Reads the names of one folder, but for hidden ones. A name that is no valid UTF-8 has no
// text that names the file again; such a file or folder goes to `leftOut`, and so does the
// folder itself when it cannot be read.
FolderNames namesIn(const QString& folder, QList<LeftOutEntry>& leftOut) {
    FolderNames names;
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
        if (QFile::encodeName(QFile::decodeName(raw)) == raw) {
            names.append(raw);
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

struct Walk {
    const std::function<void(const QString&)>& onFile;
    QList<LeftOutEntry>& leftOut;
    const std::atomic_bool* stop;
};

void walkInto(const QString& folder, const Walk& walk) {
    // Only the names are gathered and sorted (as QDir's name order does, case-sensitively):
    // a folder of tens of thousands of photos is never held as a list of file infos.
    const FolderNames names = namesIn(folder, walk.leftOut);
    std::vector<quint32> order(std::size_t(names.size()));
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = quint32(i);
    std::sort(order.begin(), order.end(),
              [&](quint32 a, quint32 b) { return utf16Less(names.at(a), names.at(b)); });
    const QString prefix = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
    for (const quint32 i : order) {
        if (walk.stop && walk.stop->load(std::memory_order_relaxed))
            return;
        const QString name = QString::fromUtf8(names.at(i));
        const QFileInfo entry(prefix + name);
        const QString path = entry.absoluteFilePath();
        if (entry.isDir()) {
            if (entry.isSymLink() || isPackageFolderName(name) || isExcludedMediaPath(path))
                continue;
            walkInto(path, walk);
        } else if (entry.isFile() && !isExcludedMediaPath(path)) {
            walk.onFile(path);
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

bool walkFolder(const QString& folder, const std::function<void(const QString&)>& onFile,
                QList<LeftOutEntry>* leftOut, const std::atomic_bool* stop) {
    const QFileInfo root(folder);
    if (!root.isDir() || !QDir(folder).isReadable())
        return false;
    if (isExcludedMediaPath(root.absoluteFilePath()))
        return true;
    walkInto(root.absoluteFilePath(), Walk{onFile, *leftOut, stop});
    return true;
}

FolderWalkResult walkFolder(const QString& folder, const std::atomic_bool* stop) {
    FolderWalkResult result;
    result.failed = !walkFolder(
        folder, [&](const QString& path) { result.files.append(path); }, &result.leftOut, stop);
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
