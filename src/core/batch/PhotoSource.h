#pragma once

#include "model/CGImageProperties.h"

#include <QList>

namespace tagmoor {

// The photos of a run in list order. The application hands a snapshot of its working list;
// the command line reads each record only when the run reaches it, so that a long run holds
// one record at a time.
class PhotoSource {
public:
    virtual ~PhotoSource() = default;
    virtual int count() const = 0;
    virtual bool isSelected(int index) const = 0;
    // The record of a photo; a record without url is skipped by the run.
    virtual CGImageProperties record(int index) const = 0;
    // The record a run starts a photo with. A source may leave its values unread (see
    // CGImageProperties::valuesUnread) once told that the run reads them itself.
    virtual CGImageProperties recordForRun(int index) const { return record(index); }
    // The path of a photo's file, without reading its record ("" when it has none).
    virtual QString pathOf(int index) const { return record(index).path(); }
};

} // namespace tagmoor
