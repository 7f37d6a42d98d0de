#include "presets/PresetExtras.h"

#include <QStringList>

namespace tagmoor {

namespace {

const QString kAddKeywords = QStringLiteral("addKeywords");
const QString kRemoveKeywords = QStringLiteral("removeKeywords");
const QString kRating = QStringLiteral("rating");
const QString kLabel = QStringLiteral("label");
const QString kTexts = QStringLiteral("texts");
const QString kPersons = QStringLiteral("persons");
const QString kSyncCopies = QStringLiteral("syncCopies");

std::optional<QString> textOf(const QVariant& value) {
    if (value.typeId() != QMetaType::QString)
        return std::nullopt;
    return value.toString();
}

std::optional<QStringList> textsOf(const QVariant& value) {
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList();
    // A list whose items are all texts reads as texts too (a file written by hand).
    if (value.typeId() != QMetaType::QVariantList)
        return std::nullopt;
    QStringList texts;
    for (const QVariant& item : value.toList()) {
        if (item.typeId() != QMetaType::QString)
            return std::nullopt;
        texts << item.toString();
    }
    return texts;
}

} // namespace

QVariantMap presetExtrasToDictionary(const ExtraEdits& extras) {
    QVariantMap dict;
    if (!extras.addKeywords.isEmpty())
        dict.insert(kAddKeywords, extras.addKeywords);
    if (!extras.removeKeywords.isEmpty())
        dict.insert(kRemoveKeywords, extras.removeKeywords);
    if (extras.rating)
        dict.insert(kRating, QVariant::fromValue<qint32>(*extras.rating));
    if (extras.label)
        dict.insert(kLabel, *extras.label);
    QVariantMap texts;
    for (const ExtraTextRow& row : kExtraTextRows) {
        if (const auto& text = extras.texts[std::size_t(row.text)])
            texts.insert(QLatin1String(row.jsonName), *text);
    }
    if (!texts.isEmpty())
        dict.insert(kTexts, texts);
    if (extras.persons)
        dict.insert(kPersons, *extras.persons);
    if (extras.syncCopies)
        dict.insert(kSyncCopies, *extras.syncCopies);
    return dict;
}

std::optional<ExtraEdits> presetExtrasFromDictionary(const QVariant& stored) {
    if (stored.typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    const QVariantMap dict = stored.toMap();
    ExtraEdits extras;
    extras.addKeywords = textsOf(dict.value(kAddKeywords)).value_or(QStringList());
    extras.removeKeywords = textsOf(dict.value(kRemoveKeywords)).value_or(QStringList());
    const QVariant rating = dict.value(kRating);
    if (rating.typeId() == QMetaType::Int || rating.typeId() == QMetaType::LongLong) {
        const qint64 stars = rating.toLongLong();
        if (stars >= kRejectedRating && stars <= kHighestRating)
            extras.rating = int(stars);
    }
    extras.label = textOf(dict.value(kLabel));
    const QVariantMap texts = dict.value(kTexts).toMap();
    for (const ExtraTextRow& row : kExtraTextRows)
        extras.texts[std::size_t(row.text)] = textOf(texts.value(QLatin1String(row.jsonName)));
    extras.persons = textsOf(dict.value(kPersons));
    const QVariant sync = dict.value(kSyncCopies);
    if (sync.typeId() == QMetaType::Bool)
        extras.syncCopies = sync.toBool();
    return extras;
}

ExtraEdits presetExtrasOf(const ExtraEdits& edits) {
    ExtraEdits kept = edits;
    kept.gpsTime.reset();
    return kept;
}

ExtraEdits extrasOverPreset(const ExtraEdits& preset, const ExtraEdits& given) {
    ExtraEdits out = given;
    QStringList added = preset.addKeywords;
    added.removeIf([&given](const QString& k) { return given.removeKeywords.contains(k); });
    out.addKeywords = added + given.addKeywords;
    out.addKeywords.removeDuplicates();
    QStringList removed = preset.removeKeywords;
    removed.removeIf([&given](const QString& k) { return given.addKeywords.contains(k); });
    out.removeKeywords = removed + given.removeKeywords;
    out.removeKeywords.removeDuplicates();
    if (!out.rating)
        out.rating = preset.rating;
    if (!out.label)
        out.label = preset.label;
    for (std::size_t i = 0; i < kExtraTextCount; ++i) {
        if (!out.texts[i])
            out.texts[i] = preset.texts[i];
    }
    if (!out.persons)
        out.persons = preset.persons;
    if (!out.syncCopies)
        out.syncCopies = preset.syncCopies;
    return out;
}

} // namespace tagmoor
