#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace tagmoor {

class DateTimeConfiguration;
enum class Field;
class FieldEditedFlags;
class Rename;
struct ExtraEdits;
struct OriginalFinalDate;

// What the next run is set to do, in a few words per item, for the bar above Start Process:
// "3 fields edited", "DateTimeOriginal +1 h", "rename: capture date", "location: …",
// "preset: Holiday", "keywords: +2 −1", "rating: 3", "label: Red". Each item is one thing the user
// set and can take back on its own.
struct RunSummaryItem {
    enum class Kind {
        fields,
        date,
        rename,
        location,
        preset,
        keywords,
        rating,
        label,
        texts,
        table, // the values of imported metadata tables
    };
    Kind kind;
    QString text;
    // For a date item: which of the six fields (its index in allDateFields).
    int dateIndex = -1;

    bool operator==(const RunSummaryItem&) const = default;
};

struct RunSummaryInputs {
    const FieldEditedFlags& edited;
    const OriginalFinalDate& dates;
    const Rename& rename;
    // The picked or typed position's name or coordinates, when the position was edited.
    std::optional<QString> location;
    // The preset whose values the form holds; empty when none.
    QString preset;
    // The edits beyond the form: keywords, rating, label, texts and people.
    const ExtraEdits* extras = nullptr;
};

QList<RunSummaryItem> runSummary(const RunSummaryInputs& inputs);

// A date rule in a few characters: "+1 h", "-2 d +1 y", "= 2021-05-06 10:22:33", "emptied";
// empty for a rule that keeps the original.
QString shortDateRule(const DateTimeConfiguration& rule, const std::optional<QDateTime>& slot);

// The fields the position item stands for: both coordinates and their references.
bool isPositionField(Field field);

} // namespace tagmoor
