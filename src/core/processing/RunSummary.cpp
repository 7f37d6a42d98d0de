#include "processing/RunSummary.h"

#include "batch/FieldEditedFlags.h"
#include "dates/DateField.h"
#include "dates/DateTimeConfiguration.h"
#include "dates/OriginalFinalDate.h"
#include "extras/ExtraEdits.h"
#include "model/FormFieldTable.h"
#include "rename/Rename.h"

#include <QCoreApplication>

namespace tagmoor {

namespace {

// "+1 h", "-30 min": the signed number and its unit, or nothing for a kept or zero part.
void addShift(QStringList& parts, int amount, bool kept, const char* unit) {
    if (kept || amount == 0)
        return;
    parts << QStringLiteral("%1%2 %3")
                 .arg(amount > 0 ? QStringLiteral("+") : QString())
                 .arg(amount)
                 .arg(QCoreApplication::translate("RunSummary", unit));
}

// The key's last part: "DateTimeOriginal" of "Exif.Photo.DateTimeOriginal".
QString dateName(DateField field) {
    const QString key = QString::fromLatin1(dateFieldKey(field));
    return key.mid(key.lastIndexOf(QLatin1Char('.')) + 1);
}

QString renameText(const Rename& rename) {
    if (const auto* add = rename.as<AddText>())
        return QCoreApplication::translate("RunSummary", "rename: add \"%1\"")
            .arg(add->addTextValueAT);
    if (const auto* replace = rename.as<ReplaceText>())
        return QCoreApplication::translate("RunSummary", "rename: \"%1\" to \"%2\"")
            .arg(replace->findTextRT, replace->replaceWithRT);
    if (rename.is<ChangeFileNameFormat>())
        return QCoreApplication::translate("RunSummary", "rename: name format");
    if (rename.is<CaptureDateName>())
        return QCoreApplication::translate("RunSummary", "rename: capture date");
    return {};
}

QString ratingText(int rating) {
    if (rating == kRejectedRating)
        return QCoreApplication::translate("RunSummary", "rating: rejected");
    return QCoreApplication::translate("RunSummary", "rating: %1").arg(rating);
}

// The items of the edits beyond the form, in the order of the tab.
void addExtraItems(QList<RunSummaryItem>& items, const ExtraEdits& extras) {
    QStringList keywordParts;
    if (!extras.addKeywords.isEmpty())
        keywordParts << QStringLiteral("+%1").arg(extras.addKeywords.size());
    if (!extras.removeKeywords.isEmpty())
        keywordParts << QStringLiteral("\u2212%1").arg(extras.removeKeywords.size());
    if (!keywordParts.isEmpty())
        items.append({RunSummaryItem::Kind::keywords,
                      QCoreApplication::translate("RunSummary", "keywords: %1")
                          .arg(keywordParts.join(QLatin1Char(' ')))});
    if (extras.rating)
        items.append({RunSummaryItem::Kind::rating, ratingText(*extras.rating)});
    if (extras.label)
        items.append(
            {RunSummaryItem::Kind::label,
             extras.label->isEmpty()
                 ? QCoreApplication::translate("RunSummary", "label: none")
                 : QCoreApplication::translate("RunSummary", "label: %1").arg(*extras.label)});
    int texts = extras.persons ? 1 : 0;
    for (const auto& text : extras.texts)
        texts += text ? 1 : 0;
    if (texts == 1)
        items.append({RunSummaryItem::Kind::texts,
                      QCoreApplication::translate("RunSummary", "1 IPTC text")});
    else if (texts > 1)
        items.append({RunSummaryItem::Kind::texts,
                      QCoreApplication::translate("RunSummary", "%1 IPTC texts").arg(texts)});
}

} // namespace

bool isPositionField(Field field) {
    return field == Field::GPSLatitude || field == Field::GPSLatitudeRef ||
           field == Field::GPSLongitude || field == Field::GPSLongitudeRef;
}

QString shortDateRule(const DateTimeConfiguration& rule, const std::optional<QDateTime>& slot) {
    if (rule.is<KeepOriginal>())
        return {};
    if (rule.is<EmptyValue>())
        return QCoreApplication::translate("RunSummary", "emptied");
    QStringList parts;
    if (const auto* idod = rule.as<IDOD>()) {
        addShift(parts, idod->changeYears, idod->isKeepOriginalYears,
                 QT_TRANSLATE_NOOP("RunSummary", "y"));
        addShift(parts, idod->changeMonths, idod->isKeepOriginalMonths,
                 QT_TRANSLATE_NOOP("RunSummary", "mo"));
        addShift(parts, idod->changeDays, idod->isKeepOriginalDays,
                 QT_TRANSLATE_NOOP("RunSummary", "d"));
        return parts.isEmpty() ? QCoreApplication::translate("RunSummary", "unchanged")
                               : parts.join(QLatin1Char(' '));
    }
    if (const auto* idot = rule.as<IDOT>()) {
        addShift(parts, idot->changeHours, idot->isKeepOriginalHours,
                 QT_TRANSLATE_NOOP("RunSummary", "h"));
        addShift(parts, idot->changeMinutes, idot->isKeepOriginalMinutes,
                 QT_TRANSLATE_NOOP("RunSummary", "min"));
        addShift(parts, idot->changeSeconds, idot->isKeepOriginalSeconds,
                 QT_TRANSLATE_NOOP("RunSummary", "s"));
        return parts.isEmpty() ? QCoreApplication::translate("RunSummary", "unchanged")
                               : parts.join(QLatin1Char(' '));
    }
    // A chosen or updated date: the date the run writes.
    if (slot && slot->isValid())
        return QStringLiteral("= ") + slot->toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    return QCoreApplication::translate("RunSummary", "set");
}

QList<RunSummaryItem> runSummary(const RunSummaryInputs& inputs) {
    QList<RunSummaryItem> items;
    int fields = 0;
    for (const FormField& field : formFields()) {
        if (inputs.edited.test(field.field) && !dateFieldOf(field.field) &&
            !isPositionField(field.field))
            ++fields;
    }
    if (fields == 1)
        items.append({RunSummaryItem::Kind::fields,
                      QCoreApplication::translate("RunSummary", "1 field edited")});
    else if (fields > 1)
        items.append({RunSummaryItem::Kind::fields,
                      QCoreApplication::translate("RunSummary", "%1 fields edited").arg(fields)});

    for (int i = 0; i < int(allDateFields.size()); ++i) {
        const DateField field = allDateFields[std::size_t(i)];
        if (!inputs.dates.alive(field))
            continue;
        const QString rule = shortDateRule(inputs.dates.rule(field), inputs.dates.slot(field));
        if (!rule.isEmpty())
            items.append(
                {RunSummaryItem::Kind::date, dateName(field) + QLatin1Char(' ') + rule, i});
    }
    if (const QString rename = renameText(inputs.rename); !rename.isEmpty())
        items.append({RunSummaryItem::Kind::rename, rename});
    if (inputs.location)
        items.append(
            {RunSummaryItem::Kind::location,
             QCoreApplication::translate("RunSummary", "location: %1").arg(*inputs.location)});
    if (!inputs.preset.isEmpty())
        items.append({RunSummaryItem::Kind::preset,
                      QCoreApplication::translate("RunSummary", "preset: %1").arg(inputs.preset)});
    if (inputs.extras)
        addExtraItems(items, *inputs.extras);
    return items;
}

} // namespace tagmoor
