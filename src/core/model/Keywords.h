#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

namespace tagmoor {

// A photo's keywords are a list; the form shows and takes them as one text, "a, b, c".

// The text of a list: its items joined by ", ".
QString joinKeywords(const QStringList& keywords);

// The items of a typed text: split at commas, blanks around each item trimmed, empty items
// and repeats left out, in the order typed.
QStringList splitKeywords(const QString& text);

// The keywords a value stands for: a list's items, or a text's items as splitKeywords gives.
QStringList keywordsOfValue(const QVariant& value);

// The IPTC Keywords dataset holds at most 64 bytes: the reason a keyword cannot be written, or
// an empty text when it can.
constexpr int kMaxKeywordBytes = 64;
QString keywordRefusal(const QString& keyword);

} // namespace tagmoor
