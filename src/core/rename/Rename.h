#pragma once

#include "rename/NameFormat.h"
#include "rename/RenamePosition.h"

#include <QString>

namespace tagmoor {

// The rename rule of a run. At most one of the five choices is true (the panel sees to it);
// when several are, the first in declared order decides, and with none the name stays.
struct Rename {
    bool isKeepOriginal = true;
    bool isAddText = false;
    bool isReplaceText = false;
    bool isChangeFileNameFormat = false;
    QString addTextValueAT;
    RenamePosition addTextPositionAT = RenamePosition::beforeName;
    QString findTextRT;
    QString replaceWithRT;
    NameFormat nameFormatNF = NameFormat::nameAndIndex();
    RenamePosition whereTextPositionNF = RenamePosition::beforeName;
    QString customFormatValueNF;
    qint64 startNumberAtNF = 1;
    int minNumberDigitsNF = 0; // 0 is "Auto": no padding
    // The name made from the photo's capture date by a Unicode date pattern (empty: the
    // default pattern), with a counter when the name is taken.
    bool isCaptureDateName = false;
    QString captureDatePatternCD;

    bool operator==(const Rename&) const = default;
};

} // namespace tagmoor
