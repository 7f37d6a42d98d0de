#pragma once

#include "batch/BatchResult.h"

#include <QByteArray>
#include <QTemporaryFile>

#include <functional>

namespace tagmoor::cli {

// The problems of a run, in the order they come, kept until the summary has been printed:
// in a temporary file, so that a run that skips each of a hundred thousand photos holds none
// of them in memory; in memory when there is no temporary file or it cannot be written.
class ProblemLog {
public:
    ProblemLog();

    void add(const PhotoProblem& problem);
    qsizetype count() const { return m_count; }
    bool isEmpty() const { return m_count == 0; }
    // Hands each problem to `f` in the order they were added.
    void forEach(const std::function<void(const PhotoProblem&)>& f);

private:
    QTemporaryFile m_file;
    bool m_onDisk = false;
    // How much of the file holds whole problems.
    qint64 m_written = 0;
    // Problems not yet in the file, serialized.
    QByteArray m_pending;
    qsizetype m_count = 0;
};

} // namespace tagmoor::cli
