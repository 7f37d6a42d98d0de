#include "batch/DatesInZone.h"

#include "dates/DateTexts.h"
#include "dates/OriginalDate.h"
#include "dates/ZoneClock.h"
#include "dates/ZonedDate.h"
#include "metadata/PropertyLoading.h"
#include "model/FormFieldTable.h"

namespace tagmoor {

namespace {

const KeyRow& rowOf(DateField field) {
    return dateFieldsInRunOrder()[std::size_t(field)]->keyRow();
}

} // namespace

void putDatesInZone(const DatesZone& zone, const CGImageProperties& record, const QString& path,
                    FieldEdits& edits) {
    const OriginalDate own = OriginalDate::of(record);
    std::optional<MetadataFieldSet> inFile; // read at the first date the run leaves as it is
    for (const DateField field : allDateFields) {
        const KeyRow& row = rowOf(field);
        if (edits.isErased(row))
            continue;
        std::optional<QString> text = edits.values.at(row).text();
        // A date the run leaves is taken as the file writes it, so that it keeps its form.
        if (!text && !path.isEmpty()) {
            if (!inFile)
                inFile = readMetadataFieldSet(path);
            text = inFile->at(row).text();
        }
        if (!text && own.get(field))
            text = sharedDateFormatter().format(*own.get(field));
        if (!text)
            continue;
        if (const std::optional<ZonedDate> zoned = zonedDate(zone, field, *text))
            edits.values.at(row) = PropertyValue(zoned->text);
    }
}

ExifDateOffsets exifDateOffsets(const DatesZone& zone, const FieldEdits& edits) {
    const auto offsetOf = [&](DateField field) -> std::optional<QString> {
        const std::optional<QString> text = edits.values.at(rowOf(field)).text();
        const std::optional<QDateTime> clock = text ? wallClockOf(*text) : std::nullopt;
        if (!clock)
            return std::nullopt;
        return ZoneClock::offsetText(ZoneClock::offsetAtWallClock(zone.zone, *clock));
    };
    return {offsetOf(DateField::modifyDate), offsetOf(DateField::dateTimeOriginal),
            offsetOf(DateField::creationDate)};
}

} // namespace tagmoor
