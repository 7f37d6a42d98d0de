#pragma once

#include "rename/Rename.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace tagmoor {

// Rename rules turn a file's base name (no extension) into the output's base name; the
// caller adds the extension. All functions are pure and thread-safe.

// The new base name of a photo under `rule`. `firstNumber` is the running number of the run
// for this photo (see RenameNumbering); `now` is the moment the name is made, used by the
// date format (text by "y-MM-dd H:m:ss.SSSS" in the user's time zone).
//  - keep: the name.
//  - add: the text before or after the name, no separator.
//  - replace: the name and the find text are lower-cased, every occurrence of the find text
//    is replaced by the replacement as typed, and the result stays lower-case (also when
//    nothing matched). An empty find text replaces nothing.
//  - format: the custom text (or the name when it is empty) with startNumberAtNF +
//    firstNumber, padded to minNumberDigitsNF for nameAndCounter, or with the date, before
//    or after it, no separator.
QString renamedBase(const Rename& rule, const QString& baseName, qint64 firstNumber,
                    const QDateTime& now);

// The same, at the current moment. With the date format the moment is that of
// distinctRenameMoment(), so that names made in one burst still differ.
QString renamedBase(const Rename& rule, const QString& baseName, qint64 firstNumber);

// The clock, read anew for each call, and later by at least a millisecond (the date text's
// step) than any moment given before in this process: when two calls fall into one
// millisecond, the second waits for the next. A clock set back by more than a second is
// followed at once.
QDateTime distinctRenameMoment();

// Why the rule cannot be used: a text of it (to add, to find, to replace with, to stand in
// for the name) holds "/", and a new name is always one file name. Nothing when it is fine.
std::optional<QString> refusedRenameText(const Rename& rule);

// What the rename panel's example shows: the rule with firstNumber 0, so the number is
// startNumberAtNF alone, and the date of `now`.
QString exampleBase(const Rename& rule, const QString& baseName, const QDateTime& now);
QString exampleBase(const Rename& rule, const QString& baseName);

// The counter's padding: zeros before the decimal text until it has `minDigits` characters.
// A minus sign counts as a character and the zeros go before it: (-5, 3) gives "0-5".
QString padNumber(qint64 number, int minDigits);

// The date text of the nameAndDate format for `moment`: "y-MM-dd H:m:ss.SSSS".
QString renameDateText(const QDateTime& moment);

} // namespace tagmoor
