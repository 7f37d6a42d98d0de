#pragma once

#include "dates/DateTimeConfiguration.h"

#include <QDateTime>

#include <optional>

namespace tagmoor {

// The three arithmetics a date rule can be computed by. Each takes the values of one mode,
// the date the rule starts from (`base`: the field's date slot, or the photo's own date when
// there is none) and the photo's own date, both valid, and gives the new date. Nothing means
// that the computation lost the date on the way, and the photo keeps its own. Pure and
// thread-safe.

// The wrap: parts are set one by one and wrap within their ranges without carrying into the
// next part, each step going through a text and parseRuleDate (see applyDateRule).
std::optional<QDateTime> wrappedDate(const UpdateDate& rule, const QDateTime& base,
                                     const QDateTime& own);
std::optional<QDateTime> wrappedDate(const IDOD& rule, const QDateTime& base, const QDateTime& own);
std::optional<QDateTime> wrappedDate(const IDOT& rule, const QDateTime& base, const QDateTime& own);

// The shifts carried as a calendar counts (see applyCarriedDateRule).
std::optional<QDateTime> carriedDate(const IDOD& rule, const QDateTime& base, const QDateTime& own);
std::optional<QDateTime> carriedDate(const IDOT& rule, const QDateTime& base, const QDateTime& own);

// "Update Date" on the photo's own date alone (see applyOwnDateRule).
std::optional<QDateTime> updatedOwnDate(const UpdateDate& rule, const QDateTime& own);

} // namespace tagmoor
