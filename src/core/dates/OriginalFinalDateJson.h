#pragma once

#include "dates/OriginalFinalDate.h"

#include <QByteArray>

#include <optional>

namespace tagmoor {

// The JSON text of a store of date rules, as a preset keeps it. Every member is written under
// its own name, in the stored order, nested records likewise ("configurationTimeOriginal":
// {"isKeepOriginal": true, ..., "updateDate": {"changeDays": 0, ...}}). A date is an ISO 8601
// text in UTC with milliseconds ("2021-05-06T10:22:33.000Z"); an absent date is left out.
// TimeMode is "am" or "pm".
QByteArray encodeOriginalFinalDate(const OriginalFinalDate& rules);

// Reads what encodeOriginalFinalDate wrote. Dates may be absent or null; every other member
// must be present with its type (numbers whole and within the range of int), or the whole
// text is refused and the caller keeps its default rules.
std::optional<OriginalFinalDate> decodeOriginalFinalDate(const QByteArray& json);

} // namespace tagmoor
