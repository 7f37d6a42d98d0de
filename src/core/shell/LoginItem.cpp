#include "shell/LoginItem.h"

#include "foundation/BoundedFile.h"
#include "shell/ShellLog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QSaveFile>

#include <algorithm>

namespace tagmoor {

namespace {

// An autostart entry is a few lines; anything much larger is not one of ours.
constexpr qint64 kMaxEntryBytes = 64 * 1024;
const QByteArray kGroup = QByteArrayLiteral("[Desktop Entry]");

// The characters that make an Exec argument need quotes.
bool isReserved(QChar c) {
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    return reserved.contains(c);
}

// One key=value line of the [Desktop Entry] group, or nothing; keys with a locale such as
// Name[de] are other keys.
struct EntryLine {
    qsizetype index; // line number
    QByteArray key;
    QByteArray value;
};

QList<EntryLine> mainGroupLines(const QList<QByteArray>& lines) {
    QList<EntryLine> found;
    bool inGroup = false;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QByteArray line = lines[i].trimmed();
        if (line.startsWith('[')) {
            inGroup = line == kGroup;
            continue;
        }
        const qsizetype eq = line.indexOf('=');
        if (!inGroup || line.startsWith('#') || eq <= 0)
            continue;
        found.append({i, line.left(eq).trimmed(), line.mid(eq + 1).trimmed()});
    }
    return found;
}

// Whether the user switched the entry off on the desktop's side.
bool turnedOffByUser(const QList<EntryLine>& lines) {
    for (const EntryLine& l : lines) {
        if (l.key == "Hidden" && l.value == "true")
            return true;
        if (l.key == "X-GNOME-Autostart-enabled" && l.value == "false")
            return true;
    }
    return false;
}

bool writeEntry(const QString& path, const QByteArray& bytes) {
    if (!QDir().mkpath(QFileInfo(path).absolutePath())) {
        qCWarning(lcShell) << "Could not create the autostart folder for" << path;
        return false;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        qCWarning(lcShell) << "Could not write the autostart entry" << path;
        return false;
    }
    return true;
}

} // namespace

LoginItem::LoginItem(QString executable) : m_executable(std::move(executable)) {}

QString LoginItem::entryPath() {
    QString base = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (base.isEmpty() || QDir::isRelativePath(base))
        base = QDir::homePath() + QStringLiteral("/.config");
    return base + QStringLiteral("/autostart/tagmoor.desktop");
}

QString LoginItem::executable() const {
    return m_executable.isEmpty() ? QCoreApplication::applicationFilePath() : m_executable;
}

QString LoginItem::execValue(const QString& program) {
    QString argument = program;
    if (std::any_of(program.cbegin(), program.cend(), isReserved)) {
        QString quoted = QStringLiteral("\"");
        for (const QChar c : program) {
            if (c == u'"' || c == u'`' || c == u'$' || c == u'\\')
                quoted += QLatin1Char('\\');
            quoted += c;
        }
        argument = quoted + QLatin1Char('"');
    }
    argument.replace(QLatin1Char('%'), QStringLiteral("%%"));
    // The string escapes of every value come on top of the quoting rules.
    QString value;
    for (const QChar c : argument) {
        if (c == u'\\')
            value += QStringLiteral("\\\\");
        else if (c == u'\n')
            value += QStringLiteral("\\n");
        else if (c == u'\t')
            value += QStringLiteral("\\t");
        else if (c == u'\r')
            value += QStringLiteral("\\r");
        else
            value += c;
    }
    return value;
}

bool LoginItem::isInstalled() const {
    const BoundedRead entry = readBoundedFile(entryPath(), kMaxEntryBytes);
    return entry.ok() && !turnedOffByUser(mainGroupLines(entry.bytes.split('\n')));
}

void LoginItem::apply(bool on) const {
    const QString path = entryPath();
    const BoundedRead entry = readBoundedFile(path, kMaxEntryBytes);
    QList<QByteArray> lines = entry.bytes.split('\n');
    const QList<EntryLine> keys = mainGroupLines(lines);
    if (entry.ok() && turnedOffByUser(keys)) {
        // Removing it would also bring back an entry of the same name that it hides.
        qCInfo(lcShell) << "The autostart entry was turned off on the desktop; it stays so:"
                        << path;
        return;
    }
    if (!on) {
        if (entry.status != BoundedRead::Status::Missing && !QFile::remove(path))
            qCWarning(lcShell) << "Could not remove the autostart entry" << path;
        return;
    }
    const QByteArray exec = execValue(executable()).toUtf8();
    if (entry.ok()) {
        // Keep what the user added to the entry; only the command follows the program.
        const auto it = std::find_if(keys.cbegin(), keys.cend(),
                                     [](const EntryLine& l) { return l.key == "Exec"; });
        if (it != keys.cend()) {
            if (it->value == exec)
                return;
            lines[it->index] = "Exec=" + exec;
            writeEntry(path, lines.join('\n'));
            return;
        }
    } else if (entry.status != BoundedRead::Status::Missing) {
        qCWarning(lcShell).noquote()
            << "The autostart entry" << path << "is not a file Tagmoor can read:" << entry.error
            << "- it is written anew";
        if (entry.status == BoundedRead::Status::NotRegular && !QFile::remove(path)) {
            qCWarning(lcShell) << "Could not remove" << path;
            return;
        }
    }
    writeEntry(path, "[Desktop Entry]\n"
                     "Type=Application\n"
                     "Name=Tagmoor\n"
                     "Exec=" +
                         exec +
                         "\n"
                         "Icon=tagmoor\n"
                         "Terminal=false\n"
                         "X-GNOME-Autostart-enabled=true\n");
}

} // namespace tagmoor
