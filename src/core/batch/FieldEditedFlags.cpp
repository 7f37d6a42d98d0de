#include "batch/FieldEditedFlags.h"

#include <algorithm>

namespace tagmoor {

bool FieldEditedFlags::test(int position) const {
    return position >= 0 && position < kFormPositionCount && m_flags[position];
}

void FieldEditedFlags::set(int position, bool edited) {
    if (position >= 0 && position < kFormPositionCount)
        m_flags[position] = edited;
}

bool FieldEditedFlags::hasEdits() const {
    return std::any_of(m_flags.begin(), m_flags.end(), [](bool f) { return f; });
}

bool FieldEditedFlags::hasKeyedEdits() const {
    const auto fields = formFields();
    return std::any_of(fields.begin(), fields.end(),
                       [this](const FormField& f) { return m_flags[f.position]; });
}

} // namespace tagmoor
