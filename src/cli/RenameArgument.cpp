#include "RenameArgument.h"

#include "rename/CaptureDateName.h"

#include <QStringList>

namespace tagmoor::cli {

namespace {

std::optional<Rename> failRename(QString* error, const QString& message) {
    *error = message;
    return std::nullopt;
}

} // namespace

std::optional<Rename> parseRenameArgument(const QString& text, QString* error) {
    const int colon = int(text.indexOf(QLatin1Char(':')));
    const QString mode = (colon < 0 ? text : text.left(colon)).trimmed().toLower();
    const QString value = colon < 0 ? QString() : text.mid(colon + 1);
    if (mode == QLatin1String("keep"))
        return Rename{};
    if (mode == QLatin1String("add-before") || mode == QLatin1String("add-after")) {
        if (value.isEmpty())
            return failRename(error, QStringLiteral("%1 needs a text to add").arg(mode));
        return AddText{value, mode == QLatin1String("add-after") ? RenamePosition::afterName
                                                                 : RenamePosition::beforeName};
    }
    if (mode == QLatin1String("replace")) {
        const int eq = int(value.indexOf(QLatin1Char('=')));
        if (eq <= 0)
            return failRename(
                error, QStringLiteral("replace wants FIND=REPLACEMENT, not '%1'").arg(value));
        return ReplaceText{value.left(eq), value.mid(eq + 1)};
    }
    if (mode == QLatin1String("capture")) {
        if (const auto refused = refusedCaptureDatePattern(value))
            return failRename(error, *refused);
        return CaptureDateName{value};
    }
    if (mode != QLatin1String("index") && mode != QLatin1String("counter") &&
        mode != QLatin1String("date"))
        return failRename(error,
                          QStringLiteral("unknown rename rule '%1' (keep, add-before, add-after, "
                                         "replace, index, counter, date, capture)")
                              .arg(text));
    ChangeFileNameFormat r;
    r.nameFormatNF = mode == QLatin1String("index")     ? NameFormat::nameAndIndex()
                     : mode == QLatin1String("counter") ? NameFormat::nameAndCounter()
                                                        : NameFormat::nameAndDate();
    for (const QString& option : value.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QString key = option.section(QLatin1Char('='), 0, 0).trimmed().toLower();
        const QString v = option.section(QLatin1Char('='), 1);
        bool ok = true;
        if (key == QLatin1String("before") && !option.contains(QLatin1Char('=')))
            r.whereTextPositionNF = RenamePosition::beforeName;
        else if (key == QLatin1String("after") && !option.contains(QLatin1Char('=')))
            r.whereTextPositionNF = RenamePosition::afterName;
        else if (key == QLatin1String("text"))
            r.customFormatValueNF = v;
        else if (key == QLatin1String("start"))
            r.startNumberAtNF = v.toLongLong(&ok);
        else if (key == QLatin1String("digits") && mode == QLatin1String("counter"))
            r.minNumberDigitsNF = v.toInt(&ok);
        else
            ok = false;
        if (!ok)
            return failRename(
                error, QStringLiteral("rename %1: option '%2' not understood").arg(mode, option));
    }
    return r;
}

} // namespace tagmoor::cli
