#pragma once

#include "extras/ExtraEdits.h"
#include "extras/ExtraValues.h"
#include "model/CGImageProperties.h"
#include "model/Field.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace tagmoor {

class MetadataForm;

// Copy and paste of metadata: the values of one photo's fields, held to be put into the form
// later as edits of the marked photos. Copying takes every field the photo has a value for,
// and of the values beyond the form its rating, label, IPTC texts and people shown; the
// screen shows entries() as a list to tick, and paste() puts the ticked ones into the form
// through its own edit paths, so that the edit flags, the highlights and the summary follow
// as if each value had been typed or chosen, and the others into the edits beyond the form.
// Main thread.
class MetadataClipboard {
public:
    // What an entry holds: a form field's value, or one of the values beyond the form.
    enum class Kind { field, rating, label, text, persons };

    // One value held: its field (or kind and text), its label and the value as shown.
    struct Entry {
        Field field;
        QString label;
        QString value;
        Kind kind = Kind::field;
        ExtraText text = ExtraText::AltText; // for Kind::text
    };

    // Holds the values of `record`, and those of `extras` beyond the form, replacing what was
    // held.
    void copy(const CGImageProperties& record,
              const std::optional<ExtraValues>& extras = std::nullopt);
    void clear();
    bool isEmpty() const { return m_entries.isEmpty(); }

    // The values held, in the form's order.
    const QList<Entry>& entries() const { return m_entries; }

    // Puts the held values of the fields `ticked` picks into `form`: a text into its control,
    // a popup onto its row, a date as a rule that sets that date. A GPS reference goes
    // through the form's question about a changed location; a "NO" keeps that reference.
    void paste(MetadataForm& form, const std::function<bool(Field)>& ticked) const;
    // The same by the position of each entry in entries(); the values beyond the form that are
    // ticked go into `extras` (a rating, label, text or list of people replaces the one there).
    void paste(MetadataForm& form, ExtraEdits& extras, const QList<bool>& ticked) const;

private:
    void copyExtras(const ExtraValues& extras);
    void pasteExtra(const Entry& entry, ExtraEdits& extras) const;

    QList<Entry> m_entries;
    CGImageProperties m_record;
    ExtraValues m_extras;
};

} // namespace tagmoor
