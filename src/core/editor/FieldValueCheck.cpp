#include "editor/FieldValueCheck.h"

#include "dates/DateTexts.h"
#include "editor/FormPopups.h"
#include "metadata/TagValueRange.h"
#include "model/Keywords.h"

#include <cmath>
#include <cstdlib>

namespace tagmoor {

namespace {

// Long lists (the country codes) are cut after this many values.
constexpr int kListedValues = 30;

constexpr int kFirstYear = 1;
constexpr int kLastYear = 9999;

QString storedText(const PropertyValue& value) {
    if (auto text = value.text())
        return *text;
    return value.variant().toString();
}

bool isEmpty(const PropertyValue& value) {
    const auto text = value.text();
    return !value.isPresent() || (text && text->trimmed().isEmpty());
}

// A number as the user would write it: whole numbers in full, others to a float's precision.
QString numberText(double value) {
    if (value == std::trunc(value) && std::fabs(value) < 1e15)
        return QString::number(qint64(value));
    return QString::number(value, 'g', 7);
}

std::optional<QString> refusedCode(const FormField& field, const PropertyValue& value) {
    if (field.kind != FormKind::Popup || !FormPopups::isPopup(field.field) ||
        FormPopups::rowOf(field.field, value) > FormPopups::kBlankRow)
        return std::nullopt;
    const QStringList texts = FormPopups::rowTexts(field.field);
    QStringList allowed;
    for (int row = FormPopups::kBlankRow + 1; row < texts.size(); ++row) {
        const auto stored = FormPopups::valueOfRow(field.field, row);
        if (!stored)
            continue;
        if (allowed.size() == kListedValues) {
            allowed << QStringLiteral("... (%1 in all)").arg(texts.size() - 1);
            break;
        }
        allowed << QStringLiteral("%1 (%2)").arg(storedText(*stored), texts[row]);
    }
    return QStringLiteral("%1 does not take '%2'; its values are: %3")
        .arg(field.name(), storedText(value), allowed.join(QStringLiteral(", ")));
}

std::optional<QString> refusedText(const FormField& field, const QString& text) {
    if (text.isValidUtf16() && !text.contains(QChar::ReplacementCharacter))
        return std::nullopt;
    return QStringLiteral("%1 is not valid UTF-8 text").arg(field.name());
}

bool isNumberRow(ReadKind kind) {
    switch (kind) {
    case ReadKind::Int64:
    case ReadKind::Float32:
    case ReadKind::Float64:
    case ReadKind::UInt8:
    case ReadKind::UInt64:
        return true;
    case ReadKind::NotRead:
    case ReadKind::Text:
    case ReadKind::DateText:
        return false;
    }
    return false;
}

// A value of a kind its row never holds (text in a number's row, a number or a picture in a
// text's row) would be written as something other than what the tag takes.
std::optional<QString> refusedKind(const FormField& field, const PropertyValue& value) {
    using Kind = PropertyValue::Kind;
    const bool numberRow = isNumberRow(field.keyRow().read);
    const bool keywords = field.field == Field::Keywords;
    bool fits = false;
    switch (value.kind()) {
    case Kind::Text:
        fits = !numberRow;
        break;
    case Kind::Int64:
    case Kind::Float32:
    case Kind::Float64:
    case Kind::UInt8:
    case Kind::UInt64:
        fits = numberRow;
        break;
    case Kind::List:
        fits = keywords;
        break;
    case Kind::Absent:
    case Kind::Date:
    case Kind::Bytes:
    case Kind::Dictionary:
        break;
    }
    if (fits)
        return std::nullopt;
    return QStringLiteral("%1 takes %2, not a value of kind %3")
        .arg(field.name(), numberRow ? QStringLiteral("a number") : QStringLiteral("text"),
             QLatin1String(PropertyValue::kindName(value.kind())));
}

// Each keyword is text that fits an IPTC Keywords dataset.
std::optional<QString> refusedKeywords(const FormField& field, const PropertyValue& value) {
    const QVariantList items = value.list().value_or(QVariantList{value.variant()});
    for (const QVariant& item : items) {
        if (item.typeId() != QMetaType::QString)
            return QStringLiteral("%1 takes a list of texts, not a value of kind %2")
                .arg(field.name(), QLatin1String(item.metaType().name()));
        if (auto refused = refusedText(field, item.toString()))
            return refused;
    }
    for (const QString& keyword : keywordsOfValue(value.variant())) {
        if (const QString refusal = keywordRefusal(keyword); !refusal.isEmpty())
            return QStringLiteral("%1: %2").arg(field.name(), refusal);
    }
    return std::nullopt;
}

std::optional<QString> refusedNumber(const FormField& field, double number) {
    const KeyRow& row = field.keyRow();
    std::optional<TagValueRange> range;
    QString hint;
    if (row.write == WriteKind::Gps) {
        // The sign of a coordinate goes to its reference; its size is the angle.
        const double limit = row.row == exifrow::GPSLatitude ? 90 : 180;
        range = TagValueRange{-limit, limit, false};
    } else {
        range = tagValueRange(row.key);
        if (row.row == exifrow::GPSAltitude && row.block == KeyBlock::Exif)
            hint = QStringLiteral(" (below sea level: the height with GPSAltitudeRef=1)");
    }
    if (!range)
        return std::nullopt;
    // What the writers make of the number: a run cuts a fraction given for a whole number (as
    // the form does), and a fraction goes through a float; a coordinate keeps its double.
    const double written = range->whole                  ? std::trunc(number)
                           : row.write == WriteKind::Gps ? number
                                                         : double(float(number));
    if (range->contains(written))
        return std::nullopt;
    return QStringLiteral("%1 takes %2 from %3 to %4, not %5%6")
        .arg(field.name(),
             range->whole ? QStringLiteral("a whole number") : QStringLiteral("a number"),
             numberText(range->lowest), numberText(range->highest), numberText(number), hint);
}

// The name the command line and the form give a date field ("DateTimeOriginal").
QString formNameOf(DateField field) {
    for (const FormField* f : dateFieldsInRunOrder()) {
        if (dateFieldOf(f->field) == field)
            return f->name();
    }
    return {};
}

QString yearText(int year) {
    return QStringLiteral("%1").arg(year, 4, 10, QLatin1Char('0'));
}

} // namespace

std::optional<QString> refusedFieldValue(const FormField& field, const CGImageProperties& record) {
    if (field.isDate())
        return std::nullopt;
    const PropertyValue* value = field.keyRow().peek(record);
    if (!value || isEmpty(*value))
        return std::nullopt;
    if (auto refused = refusedKind(field, *value))
        return refused;
    if (field.field == Field::Keywords)
        return refusedKeywords(field, *value);
    if (auto refused = refusedCode(field, *value))
        return refused;
    if (auto text = value->text())
        return refusedText(field, *text);
    if (const auto number = value->number())
        return refusedNumber(field, *number);
    return std::nullopt;
}

std::optional<QString> refusedValueKind(const FormField& field, const CGImageProperties& record) {
    if (field.isDate())
        return std::nullopt;
    const PropertyValue* value = field.keyRow().peek(record);
    if (!value || !value->isPresent())
        return std::nullopt;
    return refusedKind(field, *value);
}

std::optional<QString> refusedDateRule(DateField field, const DateTimeConfiguration& rule,
                                       const std::optional<QDateTime>& slot) {
    const auto* update = rule.as<UpdateDate>();
    const bool setsYear = rule.is<SelectDate>() || (update && !update->isKeepOriginalYears);
    if (setsYear && slot && slot->isValid()) {
        // The year as the rule writes it: the shared formatter's calendar, not Qt's, counts
        // the years of its text (they differ before 1582).
        const QString text = sharedDateFormatter().format(*slot);
        return refusedYear(field, text.left(text.indexOf(QLatin1Char('-'), 1)).toInt());
    }
    if (const auto* idod = rule.as<IDOD>();
        idod && !idod->isKeepOriginalYears &&
        std::abs(qint64(idod->changeYears)) > kLastYear - kFirstYear)
        return QStringLiteral("%1: a shift of %2 years leaves every date outside the years %3 to "
                              "%4")
            .arg(formNameOf(field))
            .arg(idod->changeYears)
            .arg(yearText(kFirstYear), yearText(kLastYear));
    return std::nullopt;
}

std::optional<QString> refusedYear(DateField field, int year) {
    if (year >= kFirstYear && year <= kLastYear)
        return std::nullopt;
    return QStringLiteral("%1: the year %2 is not from %3 to %4")
        .arg(formNameOf(field))
        .arg(year)
        .arg(yearText(kFirstYear), yearText(kLastYear));
}

std::optional<QString> refusedRunValue(const CGImageProperties& editedProperties,
                                       const FieldEditedFlags& flags,
                                       const OriginalFinalDate& dates) {
    for (const FormField& field : formFields()) {
        if (!flags.test(field.field))
            continue;
        if (field.isDate()) {
            const auto dateField = dateFieldOf(field.field);
            if (!dateField)
                continue;
            if (auto refused =
                    refusedDateRule(*dateField, dates.rule(*dateField), dates.slot(*dateField)))
                return refused;
        } else if (auto refused = refusedFieldValue(field, editedProperties)) {
            return refused;
        }
    }
    return std::nullopt;
}

} // namespace tagmoor
