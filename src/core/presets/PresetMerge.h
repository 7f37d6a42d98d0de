#pragma once

#include "presets/ActualPreset.h"

#include <QList>

namespace tagmoor {

// Three lists of presets: `base`, as a program last read or wrote the presets file; `mine`,
// the program's list now, made from `base` by its own changes; `theirs`, what the file holds
// now, made from `base` by another program (the window and the command line share the file).
// The result is `mine` with the other program's changes laid over it, so that neither drops
// what the other saved:
//  - a preset they added (or changed: their new version) joins the list, at the place of the
//    version it replaces when that is still in `mine` unchanged, else at the end; when its
//    name is taken by one of `mine`, it gets the first free "<name> (2)", "<name> (3)", ...;
//  - a preset they removed (or changed) goes, unless `mine` changed it too: an edit outlives
//    a removal;
//  - everything else is `mine`, in its order.
// Presets are told apart by all they hold, not by their `index`, which need not be unique.
QList<ActualPreset> mergePresetLists(const QList<ActualPreset>& base,
                                     const QList<ActualPreset>& mine,
                                     const QList<ActualPreset>& theirs);

} // namespace tagmoor
