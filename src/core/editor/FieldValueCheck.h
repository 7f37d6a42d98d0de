#pragma once

#include "batch/FieldEditedFlags.h"
#include "dates/DateField.h"
#include "dates/DateTimeConfiguration.h"
#include "dates/OriginalFinalDate.h"
#include "model/CGImageProperties.h"
#include "model/FormFieldTable.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace tagmoor {

// The checks a value passes before any photo is written with it, whether it was typed on the
// command line or comes from a preset. Each gives the message for the user, naming the field
// and what it takes, or nothing when the value may be written.
//
// A value is refused when writing it would not give the tag that value:
// - a coded field (a popup: orientation, flash, the GPS references, the country code...) takes
//   only a value one of its rows stands for;
// - a number must fit its tag's type (ISO -5 would wrap to 65531 in a Short, an altitude of
//   -50 m to 4294967246 m in a rational);
// - a latitude lies within ±90 degrees and a longitude within ±180;
// - a text must be valid Unicode: a lone surrogate, or the replacement character that stands
//   for bytes that were no UTF-8 when the text was read, cannot be written as what was meant;
// - a date that a rule writes has a year from 0001 to 9999.
// Empty values pass: they write the empty text or nothing.

// The value of `field` in `record` (absent: passes).
std::optional<QString> refusedFieldValue(const FormField& field, const CGImageProperties& record);

// Whether the value of `field` in `record` is of a kind the field holds: a number in a
// number's field, text (or, for keywords, a list of texts) in a text's; absent passes.
std::optional<QString> refusedValueKind(const FormField& field, const CGImageProperties& record);

// The rule of a date field with its date slot: the year of a chosen or updated date, and a
// shift by so many years that no date keeps a year in range.
std::optional<QString> refusedDateRule(DateField field, const DateTimeConfiguration& rule,
                                       const std::optional<QDateTime>& slot);

// A year that a rule of the date field would write, as a number.
std::optional<QString> refusedYear(DateField field, int year);

// Every field a run writes: the flagged fields of its form snapshot and the rules of its
// flagged date fields, in form order; the first refusal.
std::optional<QString> refusedRunValue(const CGImageProperties& editedProperties,
                                       const FieldEditedFlags& flags,
                                       const OriginalFinalDate& dates);

} // namespace tagmoor
