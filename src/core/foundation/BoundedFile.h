#pragma once

#include <QByteArray>
#include <QString>

namespace tagmoor {

// Reads a whole file that someone else may have named: regular files only, opened without
// blocking (a named pipe or a device never stalls the caller) and never more than a stated
// number of bytes, so that neither /dev/zero nor a huge file can exhaust memory.
struct BoundedRead {
    enum class Status { Ok, Missing, NotRegular, TooLarge, Unreadable };

    Status status = Status::Missing;
    QByteArray bytes; // the file's bytes when Ok
    QString error;    // why it was not read, in words, when not Ok

    bool ok() const { return status == Status::Ok; }
};

BoundedRead readBoundedFile(const QString& path, qint64 maxBytes);

} // namespace tagmoor
