#pragma once

#include "dates/DateRule.h"

namespace tagmoor {

// The new value of one date field computed on the photo's own date alone: every part that the
// rule does not set comes from the photo, never from the field's date slot (which holds the
// date of the photo that was on display when the panel was used). A shift is carried the way
// a calendar counts (see applyCarriedDateRule), so 23:30 plus one hour is 00:30 of the next
// day. "Update Date" sets the parts whose keep box is off to the rule's numbers (a year of 0
// is no year) and leaves the others as the photo has them; a day that the new month lacks
// becomes its last day. "Select Date" still writes the slot, and a photo without the date is
// left alone by the modes that start from it. Pure and thread-safe.
DateRuleOutcome applyOwnDateRule(const DateTimeConfiguration& rule,
                                 const std::optional<QDateTime>& slot,
                                 const std::optional<QDateTime>& own);

} // namespace tagmoor
