#pragma once

#include <atomic>

namespace tagmoor {

// The running number of the rename rule. It grows by one for every selected photo a run
// reaches, written or skipped, and is never reset: a second run of the same process goes on
// from where the first ended. The application holds one for its whole life.
class BatchNumbering {
public:
    long long firstNumber() const { return m_firstNumber.load(); }
    void advance(long long by = 1) { m_firstNumber += by; }

private:
    std::atomic<long long> m_firstNumber{0};
};

} // namespace tagmoor
