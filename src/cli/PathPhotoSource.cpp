#include "PathPhotoSource.h"

#include "metadata/PropertyLoading.h"
#include "workingset/FolderWalk.h"
#include "workingset/SupportedExtensions.h"

#include <QFileInfo>
#include <QThreadPool>
#include <QUrl>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <limits>

namespace tagmoor::cli {

namespace {

constexpr quint64 kMaxNames = std::numeric_limits<quint32>::max();

} // namespace

void PathPhotoSource::append(const QString& path) {
    const int index = count();
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    const QStringView folder = QStringView(path).left(slash + 1);
    if (m_runs.empty() || m_runs.back().folder != folder)
        m_runs.push_back({index, folder.toString()});
    const bool exact = path.isValidUtf16();
    const QByteArray name = exact ? QStringView(path).mid(slash + 1).toUtf8() : QByteArray();
    // Past 4 GiB of names the ends would not fit; such a list keeps the rest whole.
    if (!exact || quint64(m_names.size()) + quint64(name.size()) > kMaxNames)
        m_unusual.insert(index, path);
    else
        m_names.append(name);
    m_ends.push_back(quint32(m_names.size()));
}

QString PathPhotoSource::pathOf(int index) const {
    if (!m_unusual.isEmpty()) {
        if (const auto it = m_unusual.constFind(index); it != m_unusual.constEnd())
            return *it;
    }
    const auto run = std::prev(std::upper_bound(m_runs.begin(), m_runs.end(), index,
                                                [](int i, const Run& r) { return i < r.first; }));
    const quint32 begin = index == 0 ? 0 : m_ends[index - 1];
    return run->folder + QString::fromUtf8(m_names.constData() + begin, m_ends[index] - begin);
}

void PathPhotoSource::keepOnly(const std::vector<char>& keep) {
    // In place: a kept name only ever moves towards the front.
    std::vector<Run> runs;
    QHash<int, QString> unusual;
    qsizetype from = 0;
    qsizetype to = 0;
    int kept = 0;
    auto run = m_runs.begin();
    for (int i = 0; i < count(); ++i) {
        const qsizetype end = m_ends[i];
        while (std::next(run) != m_runs.end() && std::next(run)->first <= i)
            ++run;
        if (keep[i]) {
            if (runs.empty() || runs.back().folder != run->folder)
                runs.push_back({kept, run->folder});
            if (const auto it = m_unusual.constFind(i); it != m_unusual.constEnd())
                unusual.insert(kept, *it);
            std::memmove(m_names.data() + to, m_names.constData() + from, end - from);
            to += end - from;
            m_ends[std::size_t(kept++)] = quint32(to);
        }
        from = end;
    }
    m_names.truncate(to);
    m_ends.resize(kept);
    m_runs = std::move(runs);
    m_unusual = std::move(unusual);
}

CGImageProperties PathPhotoSource::record(int index) const {
    if (auto record = loadImageProperties(QUrl::fromLocalFile(pathOf(index))))
        return *record;
    CGImageProperties unreadable;
    unreadable.url.reset();
    return unreadable;
}

CGImageProperties PathPhotoSource::recordForRun(int index) const {
    if (!m_valuesReadByTheRun)
        return record(index);
    CGImageProperties unread;
    unread.url = QUrl::fromLocalFile(pathOf(index));
    unread.valuesUnread = true;
    return unread;
}

PathPhotoSource collectPhotoPaths(const QStringList& inputs, QStringList* warnings,
                                  QList<LeftOutEntry>* leftOut, QSet<QString>* namedFiles) {
    PathPhotoSource paths;
    for (const QString& input : inputs) {
        const QFileInfo info(input);
        if (info.isDir()) {
            QList<LeftOutEntry> walkLeftOut;
            const bool opened = walkFolder(
                info.absoluteFilePath(),
                [&](const QString& file) {
                    if (hasSupportedExtension(file))
                        paths.append(file);
                },
                &walkLeftOut);
            if (!opened)
                *warnings << QStringLiteral("cannot read the folder %1").arg(input);
            for (const LeftOutEntry& entry : std::as_const(walkLeftOut)) {
                if (entry.isFolder || hasSupportedExtension(entry.path))
                    *leftOut << entry;
            }
        } else if (info.isFile()) {
            if (hasSupportedExtension(info.fileName())) {
                paths.append(info.absoluteFilePath());
                if (namedFiles)
                    namedFiles->insert(info.absoluteFilePath());
            } else
                *warnings << QStringLiteral("not an accepted photo type: %1").arg(input);
        } else if (info.exists()) {
            *warnings << QStringLiteral("not a regular file or folder: %1").arg(input);
        } else if (input.contains(QChar::ReplacementCharacter)) {
            // The argument's bytes were no UTF-8 and reached us with stand-ins: no path of
            // ours names that file.
            *leftOut << LeftOutEntry{input, false, QStringLiteral("the name is not valid UTF-8")};
        } else {
            *warnings << QStringLiteral("no such file or folder: %1").arg(input);
        }
    }
    return paths;
}

void keepPhotos(PathPhotoSource& paths, int threads, QStringList* notPhotos) {
    const int count = paths.count();
    // One byte per photo, each written by one reader (the bits of a vector<bool> are not).
    std::vector<char> gives(std::size_t(count), 0);
    std::atomic<int> next{0};
    QThreadPool pool;
    pool.setMaxThreadCount(std::max(1, threads));
    for (int t = 0; t < pool.maxThreadCount(); ++t) {
        pool.start([&] {
            for (int i = next++; i < count; i = next++)
                gives[std::size_t(i)] = givesRecord(paths.pathOf(i));
        });
    }
    pool.waitForDone();
    for (int i = 0; i < count; ++i) {
        if (!gives[std::size_t(i)])
            *notPhotos << paths.pathOf(i);
    }
    paths.keepOnly(gives);
}

} // namespace tagmoor::cli
