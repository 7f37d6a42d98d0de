#include "ProblemLog.h"

#include <QBuffer>
#include <QDataStream>

namespace tagmoor::cli {

namespace {

constexpr qsizetype kChunk = 64 * 1024;

void readAll(QIODevice& device, qint64 end, const std::function<void(const PhotoProblem&)>& f) {
    QDataStream in(&device);
    while (device.pos() < end && in.status() == QDataStream::Ok) {
        PhotoProblem problem;
        in >> problem.path >> problem.reason;
        if (in.status() == QDataStream::Ok)
            f(problem);
    }
}

} // namespace

ProblemLog::ProblemLog() : m_onDisk(m_file.open()) {}

void ProblemLog::add(const PhotoProblem& problem) {
    ++m_count;
    QDataStream stream(&m_pending, QIODevice::WriteOnly | QIODevice::Append);
    stream << problem.path << problem.reason;
    if (!m_onDisk || m_pending.size() < kChunk)
        return;
    // A file that cannot take more leaves the rest in memory; what it holds stays good.
    if (m_file.write(m_pending) == m_pending.size() && m_file.flush()) {
        m_written += m_pending.size();
        m_pending.clear();
    } else {
        m_onDisk = false;
    }
}

void ProblemLog::forEach(const std::function<void(const PhotoProblem&)>& f) {
    if (m_written > 0 && m_file.seek(0))
        readAll(m_file, m_written, f);
    QBuffer pending(&m_pending);
    pending.open(QIODevice::ReadOnly);
    readAll(pending, m_pending.size(), f);
}

} // namespace tagmoor::cli
