#pragma once

#include "model/CGImageProperties.h"
#include "model/FormFieldTable.h"

#include <QString>

namespace tagmoor {

// Whether a preset's record holds a value the form shows for the field: a text that shows, a
// number other than zero, a popup off its blank row.
bool presetHoldsValue(const CGImageProperties& values, Field field);

// How one record's value of a form field looks in its control, and when two records agree
// on a field. Main thread; pure.
namespace FieldDisplay {

// The text a text, numeric or date control shows for the record. Numbers are printed
// plainly, and "0" or "0.0" show as nothing, so a stored zero is no value. Dates are shown
// by the shared rule formatter. Popups have no text: see popupRow.
QString text(const CGImageProperties& record, const FormField& field);

// The row a popup shows for the record (the blank row when the value stands in no row).
int popupRow(const CGImageProperties& record, const FormField& field);

// Whether the field counts as empty in the record: no text to show, or no popup value.
bool isEmpty(const CGImageProperties& record, const FormField& field);

// Whether two records agree on the field: dates as dates, texts as texts, numbers after
// conversion to text, popups by their value.
bool agree(const CGImageProperties& a, const CGImageProperties& b, const FormField& field);

// The plain text of a number value, shortest form that reads back to the same value.
QString numberText(const PropertyValue& value);

} // namespace FieldDisplay

} // namespace tagmoor
