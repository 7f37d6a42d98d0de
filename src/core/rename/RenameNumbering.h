#pragma once

#include <QtGlobal>

namespace tagmoor {

// The running number of the rename rule (firstNumber). It starts at 0 when the application
// starts and is never reset: each selected photo of each run uses up one number, written or
// skipped, so the numbers of a second run go on where the first ended. It is a plain value
// that the application owns; a run that works on photos in parallel reserves the numbers of
// all its selected photos up front and gives photo i of the list the number first + i.
class RenameNumbering {
public:
    RenameNumbering() = default;
    explicit RenameNumbering(qint64 next) : m_next(next) {}

    // The number the next photo gets.
    qint64 next() const { return m_next; }

    // Gives the next number and uses it up.
    qint64 take() { return m_next++; }

    // Uses up `count` consecutive numbers and gives the first of them.
    qint64 reserve(qint64 count) {
        const qint64 first = m_next;
        m_next += count;
        return first;
    }

    bool operator==(const RenameNumbering&) const = default;

private:
    qint64 m_next = 0;
};

} // namespace tagmoor
