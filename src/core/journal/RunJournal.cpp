#include "journal/RunJournal.h"

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
#include <sys/stat.h>
#include <unistd.h>

namespace tagmoor {

namespace {

const QString kRunFile = QStringLiteral("run.json");
const QString kRecordsFile = QStringLiteral("records.jsonl");

QString sha256(const char* data, qsizetype size) {
    return QString::fromLatin1(
        QCryptographicHash::hash(QByteArrayView(data, size), QCryptographicHash::Sha256).toHex());
}

QString systemError(int error) {
    return QString::fromLocal8Bit(std::strerror(error));
}

// Writes `bytes` to a new file at `path` and flushes them to disk.
bool writeFlushed(const QString& path, const char* data, qsizetype size, QString* error) {
    const int fd =
        ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd < 0) {
        *error = systemError(errno);
        return false;
    }
    qsizetype done = 0;
    while (done < size) {
        const ssize_t n = ::write(fd, data + done, std::size_t(size - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            *error = systemError(n < 0 ? errno : EIO);
            ::close(fd);
            return false;
        }
        done += n;
    }
    if (::fdatasync(fd) != 0) {
        *error = systemError(errno);
        ::close(fd);
        return false;
    }
    return ::close(fd) == 0 || (*error = systemError(errno), false);
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
    if (journal->m_fd < 0 || !writeRun(runFolder, run)) {
        why = QStringLiteral("cannot write in %1").arg(runFolder);
        QDir(runFolder).removeRecursively();
        return nullptr;
    }
    return journal;
}

bool RunJournal::append(const QByteArray& line, QString* error, bool flush) {
    const QByteArray bytes = line + '\n';
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(m_fd, bytes.constData() + done, std::size_t(bytes.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            if (error)
                *error = systemError(n < 0 ? errno : EIO);
            return false;
        }
        done += n;
    }
    if (flush && ::fdatasync(m_fd) != 0) {
        if (error)
            *error = systemError(errno);
        return false;
    }
    return true;
}

bool RunJournal::beforeReplace(const QString& target, const QByteArray& replaced, qint64 keptFrom,
                               const char* newData, std::size_t newSize, const struct stat& old,
                               QString* error) {
    const QMutexLocker lock(&m_mutex);
    const QString blob = QString::number(m_nextBlob++) + QStringLiteral(".bin");
    QString why;
    if (!writeFlushed(m_folder + QLatin1Char('/') + blob, replaced.constData(), replaced.size(),
                      &why)) {
        *error = QStringLiteral("the journal of the run could not be written (%1)").arg(why);
        return false;
    }
    const QJsonObject record{{QStringLiteral("t"), QStringLiteral("replaced")},
                             {QStringLiteral("path"), target},
                             {QStringLiteral("blob"), blob},
                             {QStringLiteral("keptFrom"), double(keptFrom)},
                             {QStringLiteral("newSize"), double(newSize)},
                             {QStringLiteral("hash"), sha256(newData, qsizetype(newSize))},
                             {QStringLiteral("mode"), int(old.st_mode & 07777)},
                             {QStringLiteral("atime"), timeOf(old.st_atim)},
                             {QStringLiteral("mtime"), timeOf(old.st_mtim)}};
    if (!append(QJsonDocument(record).toJson(QJsonDocument::Compact), &why)) {
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
        append(QJsonDocument(record).toJson(QJsonDocument::Compact), nullptr, false);
    }
    return paths;
}

void RunJournal::recordCreated(const QString& path) {
    QFile file(path);
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0 || !file.open(QIODevice::ReadOnly))
        return;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(&file);
    const QJsonObject record{{QStringLiteral("t"), QStringLiteral("created")},
                             {QStringLiteral("path"), path},
                             {QStringLiteral("size"), double(st.st_size)},
                             {QStringLiteral("mtime"), timeOf(st.st_mtim)},
                             {QStringLiteral("hash"), QString::fromLatin1(hash.result().toHex())}};
    // Not flushed, as the new files themselves are not: a crash may lose both.
    const QMutexLocker lock(&m_mutex);
    append(QJsonDocument(record).toJson(QJsonDocument::Compact), nullptr, false);
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
        sha256(current.constData(), qsizetype(newSize)) !=
            last.value(QStringLiteral("hash")).toString())
        return kChanged;

    QFile blob(folder + QLatin1Char('/') + first.value(QStringLiteral("blob")).toString());
    if (!blob.open(QIODevice::ReadOnly))
        return QStringLiteral("the journal has lost its copy");
    const QByteArray old = blob.readAll();
    const auto accept = [](const QString&) { return true; };
    const bool replaced =
        keptFrom < 0 ? file.replaceWith(old.constData(), std::size_t(old.size()), accept)
                     : file.replaceWith(old.constData(), std::size_t(old.size()), newSize, accept);
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
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(&file);
    file.close();
    if (QString::fromLatin1(hash.result().toHex()) !=
        record.value(QStringLiteral("hash")).toString())
        return kChanged;
    if (!QFile::remove(path))
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

    QFile records(folder + QLatin1Char('/') + kRecordsFile);
    QList<QJsonObject> created;
    QStringList replacedOrder;
    QHash<QString, QJsonObject> firstReplaced, lastReplaced, settled;
    if (records.open(QIODevice::ReadOnly)) {
        while (!records.atEnd()) {
            // A line cut short by a crash is no record.
            const QJsonObject record = QJsonDocument::fromJson(records.readLine()).object();
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
