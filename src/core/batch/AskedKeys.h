#pragma once

#include "batch/ChangePlan.h"
#include "batch/RunValues.h"

#include <QSet>
#include <QString>

#include <optional>

namespace tagmoor {

// The tags a run was asked to change: the keys of the edited fields and of the date rules
// that were touched. Nothing when the mode clears or removes tags, for then every change
// was asked for. The other changes of a plan are those the writing itself brings.
std::optional<QSet<QString>> askedKeys(const RunValues& values);

inline bool isAsked(const TagChange& change, const std::optional<QSet<QString>>& asked) {
    return !asked || asked->contains(change.key);
}

} // namespace tagmoor
