#pragma once

#include "dates/DateField.h"
#include "model/FormFieldTable.h"

#include <bitset>

namespace tagmoor {

// The form field that shows a date field.
inline Field formFieldOf(DateField field) {
    return dateFieldsInRunOrder()[std::size_t(field)]->field;
}

// The editor's record of which form fields got a new value: the system's only notion of
// "this field was edited". A run reads it, the editor writes it, Finish clears it.
class FieldEditedFlags {
public:
    bool test(Field field) const { return m_flags.test(std::size_t(field)); }
    bool operator[](Field field) const { return test(field); }
    void set(Field field, bool edited = true) { m_flags.set(std::size_t(field), edited); }
    void clearAll() { m_flags.reset(); }

    // Any field edited: what decides "No Changes in Metadata found".
    bool hasEdits() const { return m_flags.any(); }

    bool operator==(const FieldEditedFlags&) const = default;

private:
    std::bitset<kFieldCount> m_flags;
};

} // namespace tagmoor
