#include "rename/RenameRule.h"

#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <atomic>
#include <memory>
#include <thread>

namespace tagmoor {

namespace {

QString placed(const QString& text, const QString& addition, RenamePosition position) {
    return position == RenamePosition::afterName ? text + addition : addition + text;
}

QString replaced(const ReplaceText& rule, const QString& baseName) {
    // The whole name is folded to lower case, matched or not; only the replacement keeps the
    // case it was typed in.
    QString name = baseName.toLower();
    const QString find = rule.findTextRT.toLower();
    if (!find.isEmpty())
        name.replace(find, rule.replaceWithRT, Qt::CaseSensitive);
    return name;
}

QString formatted(const ChangeFileNameFormat& rule, const QString& baseName, qint64 firstNumber,
                  const QDateTime& now) {
    const QString text = rule.customFormatValueNF.isEmpty() ? baseName : rule.customFormatValueNF;
    // A start number and a running number near the ends of the 64-bit range wrap around
    // rather than overflow.
    const qint64 number = qint64(quint64(rule.startNumberAtNF) + quint64(firstNumber));
    switch (rule.nameFormatNF.kind) {
    case NameFormat::Case::nameAndIndex:
        return placed(text, QString::number(number), rule.whereTextPositionNF);
    case NameFormat::Case::nameAndCounter:
        return placed(text, padNumber(number, rule.minNumberDigitsNF), rule.whereTextPositionNF);
    case NameFormat::Case::nameAndDate:
        return placed(text, renameDateText(now), rule.whereTextPositionNF);
    }
    return text;
}

QString toQString(const icu::UnicodeString& text) {
    return QString(reinterpret_cast<const QChar*>(text.getBuffer()), text.length());
}

} // namespace

QString padNumber(qint64 number, int minDigits) {
    const QString digits = QString::number(number);
    const qsizetype zeros = qsizetype(minDigits) - digits.size();
    return zeros > 0 ? QString(zeros, QLatin1Char('0')) + digits : digits;
}

QString renameDateText(const QDateTime& moment) {
    // The date goes into file names, so it is written with ASCII digits and the Gregorian
    // calendar whatever the user's locale; the time zone is the user's at each call. Making
    // the formatter costs far more than using it, so each thread keeps one.
    thread_local const std::unique_ptr<icu::SimpleDateFormat> format = [] {
        UErrorCode status = U_ZERO_ERROR;
        auto made = std::make_unique<icu::SimpleDateFormat>(
            icu::UnicodeString(u"y-MM-dd H:m:ss.SSSS"), icu::Locale("en_US_POSIX"), status);
        return U_SUCCESS(status) ? std::move(made) : nullptr;
    }();
    if (!format || !moment.isValid())
        return {};
    format->adoptTimeZone(icu::TimeZone::createDefault());
    icu::UnicodeString text;
    format->format(UDate(moment.toMSecsSinceEpoch()), text);
    return toQString(text);
}

QString renamedBase(const Rename& rule, const QString& baseName, qint64 firstNumber,
                    const QDateTime& now) {
    if (const auto* add = rule.as<AddText>())
        return placed(baseName, add->addTextValueAT, add->addTextPositionAT);
    if (const auto* replace = rule.as<ReplaceText>())
        return replaced(*replace, baseName);
    if (const auto* format = rule.as<ChangeFileNameFormat>())
        return formatted(*format, baseName, firstNumber, now);
    // Keeping the name, and names from the capture date, which the run makes itself.
    return baseName;
}

QString renamedBase(const Rename& rule, const QString& baseName, qint64 firstNumber) {
    // Only a name format reads the clock (in the local zone, which costs a look-up).
    const auto* format = rule.as<ChangeFileNameFormat>();
    if (!format)
        return renamedBase(rule, baseName, firstNumber, QDateTime());
    const bool dated = format->nameFormatNF.kind == NameFormat::Case::nameAndDate;
    return renamedBase(rule, baseName, firstNumber,
                       dated ? distinctRenameMoment() : QDateTime::currentDateTime());
}

QDateTime distinctRenameMoment() {
    static std::atomic<qint64> lastGiven{0};
    for (;;) {
        const qint64 now = QDateTime::currentMSecsSinceEpoch();
        qint64 last = lastGiven.load();
        if (now > last || now < last - 1000) {
            if (lastGiven.compare_exchange_weak(last, now))
                return QDateTime::fromMSecsSinceEpoch(now);
            continue;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
}

std::optional<QString> refusedRenameText(const Rename& rule) {
    const QChar slash = QLatin1Char('/');
    const auto refuse = [](const char* what) {
        return QStringLiteral("the %1 cannot hold '/': a new name is one file name, never a "
                              "folder")
            .arg(QLatin1String(what));
    };
    if (const auto* add = rule.as<AddText>())
        return add->addTextValueAT.contains(slash) ? std::optional(refuse("text to add"))
                                                   : std::nullopt;
    if (const auto* replace = rule.as<ReplaceText>()) {
        if (replace->findTextRT.contains(slash))
            return refuse("text to find");
        if (replace->replaceWithRT.contains(slash))
            return refuse("replacement text");
        return std::nullopt;
    }
    if (const auto* format = rule.as<ChangeFileNameFormat>();
        format && format->customFormatValueNF.contains(slash))
        return refuse("custom text");
    return std::nullopt;
}

QString exampleBase(const Rename& rule, const QString& baseName, const QDateTime& now) {
    return renamedBase(rule, baseName, 0, now);
}

QString exampleBase(const Rename& rule, const QString& baseName) {
    return exampleBase(rule, baseName, QDateTime::currentDateTime());
}

} // namespace tagmoor
