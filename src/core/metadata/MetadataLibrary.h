#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>

namespace tagmoor {

// Sets up Exiv2 once per process: the XMP parser and the routing of its log into the
// tagmoor.metadata logging category. Call from main() before any thread starts.
void initializeMetadataLibrary();

// Each photo's parse takes and gives back a few hundred kilobytes of small blocks. By default
// glibc hands the free top of a reader thread's heap back to the system after nearly every
// photo, and the page-table flushes that costs stall every core; this keeps freed memory in
// the process for the next photo instead. For a process that reads many photos on several
// threads; call before the reader threads start.
void keepFreedMemoryInProcess();

// Exiv2's XMP toolkit is not safe to use from two threads at once, and Exiv2 only guards
// the registration of namespaces. Hold this lock around every Exiv2 call that parses or
// writes XMP: readMetadata, writeMetadata, and the XmpParser functions. A thread that already
// holds it may ask again: the inner lock then takes nothing and frees nothing.
class XmpToolkitLock {
public:
    XmpToolkitLock();
    // Takes the lock only if no other thread holds it; see ownsLock().
    explicit XmpToolkitLock(std::try_to_lock_t);
    ~XmpToolkitLock();
    // Whether this thread may use the toolkit now (it holds the lock, here or further out).
    bool ownsLock() const { return m_lock.owns_lock() || m_nested; }
    XmpToolkitLock(const XmpToolkitLock&) = delete;
    XmpToolkitLock& operator=(const XmpToolkitLock&) = delete;

private:
    std::unique_lock<std::mutex> m_lock;
    std::int64_t m_waitedNs = 0;
    std::int64_t m_heldSinceNs = 0;
    bool m_nested = false;
};
inline XmpToolkitLock lockXmpToolkit() {
    return {};
}
// The lock if it is free now: a reader with other work to do does that first instead of
// waiting.
inline XmpToolkitLock tryLockXmpToolkit() {
    return XmpToolkitLock(std::try_to_lock);
}

// How often Exiv2 reached the toolkit on a thread that did not hold the lock (it tells when it
// registers a namespace, which parsing a new namespace and every writing of XMP do). Zero in a
// correct program; the tests check it.
std::size_t unguardedXmpToolkitUses();
// Whether the calling thread holds the toolkit lock (for checks that watch the toolkit's use).
bool xmpToolkitHeldHere();

// Where a benchmark times the XMP lock, chosen when it is linked (as the write seams of
// WriteSeams.h): the core's own xmpLockTimed() is false, so the program reads no clock; a
// benchmark that links its own is told of each hold by xmpLockHeld(), from any thread.
bool xmpLockTimed();
void xmpLockHeld(std::int64_t waitedNs, std::int64_t heldNs);

} // namespace tagmoor
