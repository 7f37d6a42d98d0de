#pragma once

#include "model/CGImageProperties.h"
#include "model/Field.h"

#include <QList>
#include <QString>

#include <functional>

namespace tagmoor {

class MetadataForm;

// Copy and paste of metadata: the values of one photo's fields, held to be put into the form
// later as edits of the marked photos. Copying takes every field the photo has a value for;
// the screen shows entries() as a list to tick, and paste() puts the ticked ones into the form
// through its own edit paths, so that the edit flags, the highlights and the summary follow
// as if each value had been typed or chosen. Main thread.
class MetadataClipboard {
public:
    // One value held: its field, the field's label and the value as the form shows it.
    struct Entry {
        Field field;
        QString label;
        QString value;
    };

    // Holds the values of `record`, replacing what was held.
    void copy(const CGImageProperties& record);
    void clear();
    bool isEmpty() const { return m_entries.isEmpty(); }

    // The values held, in the form's order.
    const QList<Entry>& entries() const { return m_entries; }

    // Puts the held values of the fields `ticked` picks into `form`: a text into its control,
    // a popup onto its row, a date as a rule that sets that date. A GPS reference goes
    // through the form's question about a changed location; a "NO" keeps that reference.
    void paste(MetadataForm& form, const std::function<bool(Field)>& ticked) const;

private:
    QList<Entry> m_entries;
    CGImageProperties m_record;
};

} // namespace tagmoor
