#pragma once

#include "batch/CompactPathSet.h"
#include "model/CGImageProperties.h"
#include "rename/Rename.h"

#include <QString>

#include <mutex>

namespace tagmoor {

// The names that the capture-date rule hands out in one run. A name is taken when an earlier
// photo of the run got it or a file other than the photo's own source stands at it; a taken
// name gets a counter ("-1", "-2", ...). Safe to use from several threads; planning in list
// order gives the same names every time for the same files.
class CaptureNames {
public:
    // Whether `rule` makes names from the capture date (it is the first choice that is set).
    static bool applies(const Rename& rule);

    // The new base name of the photo at `sourcePath` with `record`, for an output in `folder`
    // with `extension`: from its DateTimeOriginal, or its file date when it has none. The
    // name as it is when neither gives a date.
    QString claim(const Rename& rule, const CGImageProperties& record, const QString& sourcePath,
                  const QString& folder, const QString& baseName, const QString& extension);

private:
    std::mutex m_mutex;
    CompactPathSet m_claimed;
};

} // namespace tagmoor
