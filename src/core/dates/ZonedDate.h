#pragma once

#include "dates/DateField.h"
#include "extras/ExtraEdits.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace tagmoor {

// A date of a run on the clock of the run's zone.
struct ZonedDate {
    // What the field gets: for an Exif date the clock in the form of the text it came from,
    // "yyyy-MM-dd HH:mm:ss" or "yyyy:MM:dd HH:mm:ss" (its offset goes into its own tag); ISO
    // 8601 with the offset for an XMP date ("2024-03-31T02:30:00+01:00").
    QString text;
    int offsetSeconds = 0;

    bool operator==(const ZonedDate&) const = default;
};

// The wall clock of a date text "yyyy-MM-dd HH:mm:ss" (or ISO 8601 with "T", with or without
// a zone, which is dropped); none for a text that is no date.
std::optional<QDateTime> wallClockOf(const QString& text);

// The date `text` (as a rule writes it, on the camera's clock when the zone moves dates) of
// `field` in `zone`; none for a text that is no date.
std::optional<ZonedDate> zonedDate(const DatesZone& zone, DateField field, const QString& text);

// Whether the field's date is an XMP date, which carries its offset in its text.
bool isXmpDateField(DateField field);

} // namespace tagmoor
