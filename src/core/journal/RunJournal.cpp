#include "journal/RunJournal.h"

#include "foundation/Checksum.h"
#include "foundation/PageCopy.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSaveFile>
#include <QStandardPaths>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tagmoor {

namespace {

const QString kRunFile = QStringLiteral("run.json");
// The records of a run: one JSON object per line, the old bytes of a replaced file right after
// the line of its record (as many as its "bytes" says), so that a photo's whole entry goes to
// the disk in one write and one flush.
const QString kRecordsFile = QStringLiteral("records.log");
// Journals of earlier versions: the same lines without bytes between them, each file's old bytes
// in a file of their own ("blob").
const QString kOldRecordsFile = QStringLiteral("records.jsonl");

QString sha256(const char* data, qsizetype size) {
    return QString::fromLatin1(
        QCryptographicHash::hash(QByteArrayView(data, size), QCryptographicHash::Sha256).toHex());
}

// What tells that bytes are still those a run left: their CRC-32C under "crc32c" (records of
// this version), or the SHA-256 under "hash" that journals of earlier versions hold. Either goes
// with the size, which is compared first.
const QString kCrc = QStringLiteral("crc32c");
const QString kSha = QStringLiteral("hash");

bool sameBytes(const QJsonObject& record, const char* data, qsizetype size) {
    if (record.contains(kCrc))
        return double(crc32c(data, std::size_t(size))) == record.value(kCrc).toDouble();
    return sha256(data, size) == record.value(kSha).toString();
}

// The checksum of a whole file as the record keys it, read in pieces; nothing when it can't be
// read.
std::optional<std::pair<QString, QJsonValue>> checksumOfFile(const QString& path,
                                                             bool earlierVersion) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    if (earlierVersion) {
        QCryptographicHash hash(QCryptographicHash::Sha256);
        if (!hash.addData(&file))
            return std::nullopt;
        return std::pair{kSha, QJsonValue(QString::fromLatin1(hash.result().toHex()))};
    }
    QByteArray buffer;
    resizeForRead(buffer, 1 << 20);
    std::uint32_t crc = 0;
    for (;;) {
        const qint64 n = file.read(buffer.data(), buffer.size());
        if (n < 0)
            return std::nullopt;
        if (n == 0)
            break;
        crc = crc32c(buffer.constData(), std::size_t(n), crc);
    }
    return std::pair{kCrc, QJsonValue(double(crc))};
}

QString systemError(int error) {
    return QString::fromLocal8Bit(std::strerror(error));
}

// Puts the names in `folder` on the disk.
bool flushFolder(const QString& folder) {
    const int fd =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return false;
    const bool flushed = ::fsync(fd) == 0;
    ::close(fd);
    return flushed;
}

QJsonArray timeOf(const struct timespec& t) {
    return {double(t.tv_sec), double(t.tv_nsec)};
}

struct timespec timeFrom(const QJsonValue& value) {
    const QJsonArray a = value.toArray();
    struct timespec t {};
    t.tv_sec = time_t(a.at(0).toDouble());
    t.tv_nsec = long(a.at(1).toDouble());
    return t;
}

QJsonObject readRun(const QString& folder) {
    QFile file(folder + QLatin1Char('/') + kRunFile);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

bool writeRun(const QString& folder, const QJsonObject& run) {
    QSaveFile file(folder + QLatin1Char('/') + kRunFile);
    return file.open(QIODevice::WriteOnly) &&
           file.write(QJsonDocument(run).toJson(QJsonDocument::Compact)) >= 0 && file.commit();
}

JournalRun runOf(const QJsonObject& o) {
    JournalRun run;
    run.id = o.value(QStringLiteral("id")).toString();
    run.when = QDateTime::fromString(o.value(QStringLiteral("when")).toString(), Qt::ISODateWithMs);
    run.inPlace = o.value(QStringLiteral("inPlace")).toBool(true);
    run.folder = o.value(QStringLiteral("folder")).toString();
    run.photos = o.value(QStringLiteral("photos")).toInt();
    run.undone = o.value(QStringLiteral("undone")).toBool();
    return run;
}

QStringList runFolders() {
    QStringList names = QDir(RunJournal::root()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    // The ids begin with the start time, so the names sort from the oldest run on.
    std::sort(names.begin(), names.end());
    return names;
}

const QString kChanged = QStringLiteral("changed since the run");

} // namespace

QString RunJournal::root() {
    // TAGMOOR_JOURNAL_DIR keeps the journal elsewhere (the screen tests keep theirs in their
    // scratch folder).
    if (const QString moved = qEnvironmentVariable("TAGMOOR_JOURNAL_DIR"); !moved.isEmpty())
        return moved;
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Tagmoor/journal");
}

RunJournal::RunJournal(QString folder, QString id)
    : m_folder(std::move(folder)), m_id(std::move(id)) {}

RunJournal::~RunJournal() {
    if (m_fd >= 0)
        ::close(m_fd);
}

std::unique_ptr<RunJournal> RunJournal::start(bool inPlace, const QString& folder, int photos,
                                              QString* error) {
    QString ignored;
    QString& why = error ? *error : ignored;
    if (!QDir().mkpath(root())) {
        why = QStringLiteral("cannot make the folder %1").arg(root());
        return nullptr;
    }
    // The oldest runs go, so that with this one the journal keeps kKeptRuns.
    QStringList old = runFolders();
    while (old.size() >= kKeptRuns)
        QDir(root() + QLatin1Char('/') + old.takeFirst()).removeRecursively();

    // The ids sort in the order the runs started: a run starts in a later millisecond than
    // the newest before it.
    QDateTime now = QDateTime::currentDateTimeUtc();
    const QString newest = old.isEmpty() ? QString() : old.last().left(18);
    while (now.toString(QStringLiteral("yyyyMMdd-HHmmsszzz")) <= newest) {
        QThread::msleep(1);
        now = QDateTime::currentDateTimeUtc();
    }
    QString id;
    QString runFolder;
    for (int attempt = 0; attempt < 8; ++attempt) {
        id = now.toString(QStringLiteral("yyyyMMdd-HHmmsszzz-")) +
             QString::number(QRandomGenerator::global()->bounded(0x10000), 16)
                 .rightJustified(4, QLatin1Char('0'));
        runFolder = root() + QLatin1Char('/') + id;
        if (QDir().mkdir(runFolder))
            break;
        runFolder.clear();
    }
    if (runFolder.isEmpty()) {
        why = QStringLiteral("cannot make a folder in %1").arg(root());
        return nullptr;
    }
    const QJsonObject run{{QStringLiteral("id"), id},
                          {QStringLiteral("when"), now.toString(Qt::ISODateWithMs)},
                          {QStringLiteral("inPlace"), inPlace},
                          {QStringLiteral("folder"), folder},
                          {QStringLiteral("photos"), photos},
                          {QStringLiteral("undone"), false}};
    std::unique_ptr<RunJournal> journal(new RunJournal(runFolder, id));
    journal->m_fd =
        ::open(QFile::encodeName(runFolder + QLatin1Char('/') + kRecordsFile).constData(),
               O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    // The records' file is flushed photo by photo; its name, and the run's folder, once here.
    if (journal->m_fd < 0 || !writeRun(runFolder, run) || !flushFolder(runFolder) ||
        !flushFolder(root())) {
        why = QStringLiteral("cannot write in %1").arg(runFolder);
        QDir(runFolder).removeRecursively();
        return nullptr;
    }
    return journal;
}

bool RunJournal::append(const QByteArray& entry, QString* error) {
    const auto failed = [&](int code) {
        // A record cut short would make the records after it unreadable: the file goes back to
        // where it ended, and the entry is as if never begun. Should even that fail, nothing
        // more is written into it.
        if (::ftruncate(m_fd, off_t(m_size)) != 0)
            m_broken = true;
        if (error)
            *error = systemError(code);
        return false;
    };
    qsizetype done = 0;
    while (done < entry.size()) {
        const ssize_t n = ::write(m_fd, entry.constData() + done, std::size_t(entry.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return failed(n < 0 ? errno : EIO);
        done += n;
    }
    m_size += entry.size();
    ++m_entries;
    return true;
}

bool RunJournal::flushThrough(quint64 entry, QMutexLocker<QMutex>& lock, QString* error) {
    while (m_flushedEntries < entry) {
        if (m_broken) {
            *error = QStringLiteral("the journal could not be put on the disk");
            return false;
        }
        if (m_flushing) {
            m_flushDone.wait(&m_mutex);
            continue;
        }
        m_flushing = true;
        const quint64 entries = m_entries;
        const qint64 size = m_size;
        lock.unlock();
        const int failure = ::fdatasync(m_fd) == 0 ? 0 : errno;
        lock.relock();
        m_flushing = false;
        if (failure == 0) {
            m_flushedEntries = entries;
            m_flushedSize = size;
        } else {
            // What was appended since the last good flush may not be on the disk: it goes,
            // and each photo whose record it held stays as it is.
            if (::ftruncate(m_fd, off_t(m_flushedSize)) == 0)
                m_size = m_flushedSize;
            m_broken = true;
            *error = systemError(failure);
        }
        m_flushDone.wakeAll();
        if (failure != 0)
            return false;
    }
    return true;
}

bool RunJournal::beforeReplace(const QString& target, const QByteArray& replaced, qint64 keptFrom,
                               const char* newData, std::size_t newSize, const struct stat& old,
                               QString* error) {
    // The checksum needs no lock.
    const double newCrc = double(crc32c(newData, newSize));
    const QJsonObject record{{QStringLiteral("t"), QStringLiteral("replaced")},
                             {QStringLiteral("path"), target},
                             {QStringLiteral("bytes"), double(replaced.size())},
                             {QStringLiteral("keptFrom"), double(keptFrom)},
                             {QStringLiteral("newSize"), double(newSize)},
                             {kCrc, newCrc},
                             {QStringLiteral("mode"), int(old.st_mode & 07777)},
                             {QStringLiteral("atime"), timeOf(old.st_atim)},
                             {QStringLiteral("mtime"), timeOf(old.st_mtim)}};
    QByteArray entry = QJsonDocument(record).toJson(QJsonDocument::Compact);
    entry.reserve(entry.size() + 1 + replaced.size());
    entry += '\n';
    entry += replaced;
    QMutexLocker lock(&m_mutex);
    QString why;
    // The records' file is kept open: one that lost its name keeps nothing for an undo.
    struct stat st {};
    if (m_broken)
        why = QStringLiteral("an earlier record could not be taken back");
    else if (::fstat(m_fd, &st) != 0 || st.st_nlink == 0)
        why = QStringLiteral("its file is gone");
    // One write for the whole entry, the record and the old bytes with it, and a flush that
    // covers it.
    if (!why.isEmpty() || !append(entry, &why) || !flushThrough(m_entries, lock, &why)) {
        *error = QStringLiteral("the journal of the run could not be written (%1)").arg(why);
        return false;
    }
    m_pending[QThread::currentThreadId()].append(target);
    return true;
}

QStringList RunJournal::settleReplaced() {
    const QMutexLocker lock(&m_mutex);
    const QStringList paths = m_pending.take(QThread::currentThreadId());
    for (const QString& path : paths) {
        struct stat st {};
        if (::stat(QFile::encodeName(path).constData(), &st) != 0)
            continue;
        const QJsonObject record{{QStringLiteral("t"), QStringLiteral("settled")},
                                 {QStringLiteral("path"), path},
                                 {QStringLiteral("size"), double(st.st_size)},
                                 {QStringLiteral("mtime"), timeOf(st.st_mtim)}};
        // Not flushed: without it, undo still tells the run's bytes by their hash.
        append(QJsonDocument(record).toJson(QJsonDocument::Compact) + '\n', nullptr);
    }
    return paths;
}

void RunJournal::written(const struct stat& file, std::uint32_t crc) {
    // An output and its sidecar are recorded soon after they are written; a few are enough.
    constexpr qsizetype kKept = 4;
    const QMutexLocker lock(&m_mutex);
    QList<Written>& list = m_written[QThread::currentThreadId()];
    if (list.size() >= kKept)
        list.removeFirst();
    list.append({file.st_dev, file.st_ino, file.st_size, crc});
}

void RunJournal::recordCreated(const QString& path) {
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) == 0)
        recordCreated(path, st);
}

void RunJournal::recordCreated(const QString& path, const struct stat& st) {
    // The file as it was written here, unless it has been replaced or resized since: its
    // checksum is known without reading it back. Bytes changed since in place make undo leave
    // the file alone, as any change after the run does.
    std::optional<std::pair<QString, QJsonValue>> checksum;
    {
        const QMutexLocker lock(&m_mutex);
        QList<Written>& list = m_written[QThread::currentThreadId()];
        for (qsizetype i = 0; i < list.size(); ++i) {
            const Written& w = list.at(i);
            if (w.device == st.st_dev && w.inode == st.st_ino && w.size == st.st_size) {
                checksum = std::pair{kCrc, QJsonValue(double(w.crc))};
                list.removeAt(i);
                break;
            }
        }
    }
    if (!checksum)
        checksum = checksumOfFile(path, false);
    if (!checksum)
        return;
    const QJsonObject record{{QStringLiteral("t"), QStringLiteral("created")},
                             {QStringLiteral("path"), path},
                             {QStringLiteral("size"), double(st.st_size)},
                             {QStringLiteral("mtime"), timeOf(st.st_mtim)},
                             {checksum->first, checksum->second}};
    // Not flushed, as the new files themselves are not: a crash may lose both.
    const QMutexLocker lock(&m_mutex);
    append(QJsonDocument(record).toJson(QJsonDocument::Compact) + '\n', nullptr);
}

QList<JournalRun> RunJournal::runs() {
    QList<JournalRun> list;
    const QStringList names = runFolders();
    for (auto it = names.crbegin(); it != names.crend(); ++it) {
        const QJsonObject o = readRun(root() + QLatin1Char('/') + *it);
        if (!o.isEmpty())
            list.append(runOf(o));
    }
    return list;
}

namespace {

bool sameTime(const struct timespec& a, const struct timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

// Where a record's old bytes stand in the records' file ("at", noted while reading it), or the
// file of its own that an older journal kept them in.
const QString kAt = QStringLiteral("at");

std::optional<QByteArray> oldBytesOf(const QString& folder, const QJsonObject& record) {
    if (record.contains(kAt)) {
        QFile records(folder + QLatin1Char('/') + kRecordsFile);
        const qint64 size = qint64(record.value(QStringLiteral("bytes")).toDouble());
        if (!records.open(QIODevice::ReadOnly) ||
            !records.seek(qint64(record.value(kAt).toDouble())))
            return std::nullopt;
        QByteArray bytes = records.read(size);
        if (bytes.size() != size)
            return std::nullopt;
        return bytes;
    }
    QFile blob(folder + QLatin1Char('/') + record.value(QStringLiteral("blob")).toString());
    if (!blob.open(QIODevice::ReadOnly))
        return std::nullopt;
    return blob.readAll();
}

// The records of a run in the order they were written. An entry cut short by a crash, at the
// end, is no record.
QList<QJsonObject> readRecords(const QString& folder) {
    QList<QJsonObject> list;
    QFile records(folder + QLatin1Char('/') + kRecordsFile);
    if (!records.exists())
        records.setFileName(folder + QLatin1Char('/') + kOldRecordsFile);
    if (!records.open(QIODevice::ReadOnly))
        return list;
    while (!records.atEnd()) {
        const QByteArray line = records.readLine();
        if (!line.endsWith('\n'))
            break;
        QJsonObject record = QJsonDocument::fromJson(line).object();
        if (const QJsonValue bytes = record.value(QStringLiteral("bytes")); !bytes.isUndefined()) {
            const qint64 at = records.pos();
            const qint64 size = qint64(bytes.toDouble());
            if (size < 0 || at + size > records.size() || !records.seek(at + size))
                break;
            record.insert(kAt, double(at));
        }
        list.append(record);
    }
    return list;
}

// Gives a photo replaced in place its old bytes, file times and permissions back.
QString restoreReplaced(const QString& folder, const QJsonObject& first, const QJsonObject& last,
                        const std::optional<QJsonObject>& settled) {
    const QString path = first.value(QStringLiteral("path")).toString();
    const qint64 keptFrom = qint64(last.value(QStringLiteral("keptFrom")).toDouble());
    const qint64 newSize = qint64(last.value(QStringLiteral("newSize")).toDouble());
    const QByteArray encoded = QFile::encodeName(path);
    struct stat now {};
    if (::stat(encoded.constData(), &now) != 0)
        return QStringLiteral("no longer there");
    if (settled &&
        (qint64(now.st_size) != qint64(settled->value(QStringLiteral("size")).toDouble()) ||
         !sameTime(now.st_mtim, timeFrom(settled->value(QStringLiteral("mtime"))))))
        return kChanged;

    SafeFileReplace file(path);
    const std::optional<FileStamp> stamp = SafeFileReplace::stampOf(path);
    if (file.readTarget(stamp, keptFrom < 0 ? -1 : newSize) != SafeFileReplace::ReadResult::Read)
        return file.trouble() == SafeFileReplace::Trouble::Changed ? kChanged : file.errorText();
    const QByteArray& current = file.originalBytes();
    if ((keptFrom >= 0 && file.targetSize() < newSize) ||
        (keptFrom < 0 && current.size() != newSize) ||
        !sameBytes(last, current.constData(), qsizetype(newSize)))
        return kChanged;

    const std::optional<QByteArray> old = oldBytesOf(folder, first);
    if (!old)
        return QStringLiteral("the journal has lost its copy");
    const auto accept = [](const QString&) { return true; };
    const bool replaced =
        keptFrom < 0
            ? file.replaceWith(old->constData(), std::size_t(old->size()), accept)
            : file.replaceWith(old->constData(), std::size_t(old->size()), newSize, accept);
    if (!replaced)
        return file.errorText();
    ::chmod(encoded.constData(), mode_t(first.value(QStringLiteral("mode")).toInt()));
    const struct timespec times[2] = {timeFrom(first.value(QStringLiteral("atime"))),
                                      timeFrom(first.value(QStringLiteral("mtime")))};
    if (::utimensat(AT_FDCWD, encoded.constData(), times, 0) != 0)
        return QStringLiteral("restored, but its file times could not be set");
    return {};
}

// Removes a file the run made, if it still is what the run left.
QString removeCreated(const QJsonObject& record) {
    const QString path = record.value(QStringLiteral("path")).toString();
    struct stat now {};
    if (::stat(QFile::encodeName(path).constData(), &now) != 0)
        return QStringLiteral("no longer there");
    if (qint64(now.st_size) != qint64(record.value(QStringLiteral("size")).toDouble()) ||
        !sameTime(now.st_mtim, timeFrom(record.value(QStringLiteral("mtime")))))
        return kChanged;
    const auto checksum = checksumOfFile(path, !record.contains(kCrc));
    if (!checksum)
        return QStringLiteral("it could not be read");
    const QJsonValue recorded = record.value(checksum->first);
    if (checksum->first == kCrc ? checksum->second.toDouble() != recorded.toDouble()
                                : checksum->second.toString() != recorded.toString())
        return kChanged;
    QFile file(path);
    if (!file.remove())
        return file.errorString();
    return {};
}

} // namespace

UndoReport RunJournal::undo(const QString& id) {
    UndoReport report;
    QString runId = id;
    if (runId.isEmpty()) {
        for (const JournalRun& run : runs()) {
            if (!run.undone) {
                runId = run.id;
                break;
            }
        }
    }
    report.id = runId;
    const QString folder = root() + QLatin1Char('/') + runId;
    QJsonObject run = runId.isEmpty() ? QJsonObject{} : readRun(folder);
    if (run.isEmpty()) {
        report.status = UndoReport::Status::NoSuchRun;
        return report;
    }
    if (run.value(QStringLiteral("undone")).toBool()) {
        report.status = UndoReport::Status::AlreadyUndone;
        return report;
    }

    QList<QJsonObject> created;
    QStringList replacedOrder;
    QHash<QString, QJsonObject> firstReplaced, lastReplaced, settled;
    for (const QJsonObject& record : readRecords(folder)) {
        const QString kind = record.value(QStringLiteral("t")).toString();
        const QString path = record.value(QStringLiteral("path")).toString();
        if (kind == QLatin1String("created")) {
            created.append(record);
        } else if (kind == QLatin1String("replaced")) {
            if (!firstReplaced.contains(path)) {
                firstReplaced.insert(path, record);
                replacedOrder.append(path);
            }
            lastReplaced.insert(path, record);
            settled.remove(path);
        } else if (kind == QLatin1String("settled")) {
            settled.insert(path, record);
        }
    }
    for (const QString& path : replacedOrder) {
        const QString why = restoreReplaced(
            folder, firstReplaced.value(path), lastReplaced.value(path),
            settled.contains(path) ? std::optional(settled.value(path)) : std::nullopt);
        if (why.isEmpty())
            report.restored.append(path);
        else
            report.leftAlone.append({path, why});
    }
    for (auto it = created.crbegin(); it != created.crend(); ++it) {
        const QString path = it->value(QStringLiteral("path")).toString();
        const QString why = removeCreated(*it);
        if (why.isEmpty())
            report.restored.append(path);
        else
            report.leftAlone.append({path, why});
    }
    run.insert(QStringLiteral("undone"), true);
    writeRun(folder, run);
    return report;
}

} // namespace tagmoor
