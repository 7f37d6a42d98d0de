#include "metadata/WriteResult.h"

#include <cerrno>

namespace tagmoor {

WriteStatus writeStatusOfErrno(int error) {
    switch (error) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return WriteStatus::DiskFull;
    case EACCES:
    case EPERM:
    case EROFS:
        return WriteStatus::NoPermission;
    default:
        return WriteStatus::Failed;
    }
}

QString writeStatusText(WriteStatus status) {
    switch (status) {
    case WriteStatus::Written:
        return QStringLiteral("written");
    case WriteStatus::NotWritable:
        return QStringLiteral("format not writable");
    case WriteStatus::DiskFull:
        return QStringLiteral("disk full");
    case WriteStatus::NoPermission:
        return QStringLiteral("no permission");
    case WriteStatus::FileChanged:
        return QStringLiteral("file changed");
    case WriteStatus::NotAPhoto:
        return QStringLiteral("not a photo any more");
    case WriteStatus::Failed:
        break;
    }
    return QStringLiteral("write failed");
}

} // namespace tagmoor
