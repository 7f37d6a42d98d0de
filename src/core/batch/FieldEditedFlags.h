#pragma once

#include "model/FormFieldTable.h"

#include <array>

namespace tagmoor {

// The editor's record of which form positions got a new value: the system's only notion of
// "this field was edited". One flag per form position, 0 to 89; a run reads it, the
// editor writes it, Finish clears it.
class FieldEditedFlags {
public:
    bool test(int position) const;
    bool operator[](int position) const { return test(position); }
    void set(int position, bool edited = true);
    void clearAll() { m_flags.fill(false); }

    // Any flag at all.
    bool hasEdits() const;
    // Any flag of a position that has a key: what decides "No Changes in Metadata found".
    bool hasKeyedEdits() const;

    bool operator==(const FieldEditedFlags&) const = default;

private:
    std::array<bool, kFormPositionCount> m_flags{};
};

} // namespace tagmoor
