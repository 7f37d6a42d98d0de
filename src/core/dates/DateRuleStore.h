#pragma once

#include "dates/OriginalFinalDate.h"

namespace tagmoor {

// One store of date rules. The application holds two: editorDates for the main form (the one
// a run reads) and presetDates for the form of the preset panel. Main thread only; a run
// takes a copy with rules() before it starts and never looks at the store again.
class DateRuleStore {
public:
    const OriginalFinalDate& rules() const { return m_rules; }

    // Back to the empty store (the form was reset).
    void reset() { m_rules = OriginalFinalDate{}; }

    // The whole store replaced (a preset's rules were applied).
    void replace(const OriginalFinalDate& rules) { m_rules = rules; }

    // The field's rule back to untouched: the original is kept, no date slot.
    void forget(DateField field);

    // What the date panel does when it closes: the field's rule and date slot are stored,
    // and the touched flag goes up when either differs from what was stored. The flag never
    // goes down here.
    void commitPanel(DateField field, const DateTimeConfiguration& rule,
                     const std::optional<QDateTime>& slot);

private:
    OriginalFinalDate m_rules;
};

// The application's two stores. The date panel picks one by its isHomeMetadata flag.
struct DateStores {
    DateRuleStore editorDates;
    DateRuleStore presetDates;

    DateRuleStore& forPanel(bool isHomeMetadata) {
        return isHomeMetadata ? editorDates : presetDates;
    }
};

} // namespace tagmoor
