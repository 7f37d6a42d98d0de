#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace tagmoor {

// Names made from a photo's capture date. Pure and thread-safe.

// The pattern used when the rule gives none.
QString defaultCaptureDatePattern();

// The base name of a photo taken at `moment` under the Unicode date pattern `pattern` (empty:
// the default), in the user's time zone, with ASCII digits and the Gregorian calendar. The
// name is one file name that every common file system takes: "/", ":", "\", control
// characters and <>"|?* become "-", and leading dots and blanks and trailing blanks and dots
// go. Empty when the moment is invalid or nothing is left.
QString captureDateName(const QString& pattern, const QDateTime& moment);

// Why `pattern` cannot make names: it is not a valid date pattern, or it holds no date field
// at all (every photo would get the same name). Nothing when it is fine.
std::optional<QString> refusedCaptureDatePattern(const QString& pattern);

// The name with a counter for the n-th collision (n >= 1): "20240101-120000-1".
QString countedCaptureName(const QString& base, int n);

} // namespace tagmoor
