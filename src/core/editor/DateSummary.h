#pragma once

#include "dates/DateTimeConfiguration.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace tagmoor {

// The text a date field of the form shows once its rule was touched: "Keep Original",
// "Empty Value", the chosen date, or "Update: " / "Inc/Dec: " followed by the parts that are
// not kept, each as " Name: number " (the double blanks between parts are intended). `slot`
// is the field's date slot, the date that "Update Date" produces; its time is the one shown.
//
// `nonZero` leaves out the numbers that are 0 as well: the summary the date panel shows while
// the user works, where a 0 means "no change" for the part.
enum class SummaryParts { all, nonZero };
QString dateSummary(const DateTimeConfiguration& rule, const std::optional<QDateTime>& slot,
                    SummaryParts shown = SummaryParts::all);

} // namespace tagmoor
