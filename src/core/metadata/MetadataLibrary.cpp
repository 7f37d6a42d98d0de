#include "metadata/MetadataLibrary.h"

#include "metadata/XmpNamespaces.h"

#include <QLoggingCategory>

#include <exiv2/exiv2.hpp>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include <atomic>
#include <chrono>
#include <cstdarg>
#include <cstdlib>
#include <mutex>

Q_LOGGING_CATEGORY(lcExiv2, "tagmoor.metadata.exiv2", QtWarningMsg)

namespace tagmoor {

namespace {
void exiv2Log(int level, const char* message) {
    QByteArray text(message);
    while (text.endsWith('\n'))
        text.chop(1);
    if (level >= Exiv2::LogMsg::error)
        qCWarning(lcExiv2).noquote() << text;
    else
        qCDebug(lcExiv2).noquote() << text;
}
// Exiv2 takes this lock when it registers XMP namespaces (recursive, in case it ever nests).
std::recursive_mutex& namespaceMutex() {
    static std::recursive_mutex mutex;
    return mutex;
}
// Whether this thread holds the toolkit lock: a holder that asks again (a step that needs the
// toolkit, called from inside a parse that already holds it) goes on without taking it twice.
thread_local bool t_holdsXmpLock = false;
std::atomic<std::size_t> g_unguardedUses{0};
// Exiv2 registers a namespace with the toolkit while it parses a packet that brings a new one
// and for every namespace of a packet it writes: a thread without the toolkit lock then uses
// the toolkit beside other threads, which can lose values of their photos without an error.
void lockNamespaces(void* mutex, bool lock) {
    if (lock) {
        if (!t_holdsXmpLock && g_unguardedUses.fetch_add(1) == 0)
            qCWarning(lcExiv2) << "XMP toolkit used without its lock";
        static_cast<std::recursive_mutex*>(mutex)->lock();
    } else {
        static_cast<std::recursive_mutex*>(mutex)->unlock();
    }
}
} // namespace

namespace {
std::mutex& xmpMutex() {
    static std::mutex mutex;
    return mutex;
}
std::int64_t nowNs() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}
} // namespace

XmpToolkitLock::XmpToolkitLock() {
    if (t_holdsXmpLock) {
        m_nested = true;
        return;
    }
    if (!xmpLockTimed()) {
        m_lock = std::unique_lock<std::mutex>(xmpMutex());
        t_holdsXmpLock = true;
        return;
    }
    const std::int64_t asked = nowNs();
    m_lock = std::unique_lock<std::mutex>(xmpMutex());
    t_holdsXmpLock = true;
    m_heldSinceNs = nowNs();
    m_waitedNs = m_heldSinceNs - asked;
}

XmpToolkitLock::XmpToolkitLock(std::try_to_lock_t) {
    if (t_holdsXmpLock) {
        m_nested = true;
        return;
    }
    m_lock = std::unique_lock<std::mutex>(xmpMutex(), std::try_to_lock);
    if (!m_lock.owns_lock())
        return;
    t_holdsXmpLock = true;
    if (xmpLockTimed())
        m_heldSinceNs = nowNs();
}

XmpToolkitLock::~XmpToolkitLock() {
    if (!m_lock.owns_lock())
        return;
    t_holdsXmpLock = false;
    if (m_heldSinceNs != 0)
        xmpLockHeld(m_waitedNs, nowNs() - m_heldSinceNs);
}

std::size_t unguardedXmpToolkitUses() {
    return g_unguardedUses.load();
}

bool xmpToolkitHeldHere() {
    return t_holdsXmpLock;
}

void keepFreedMemoryInProcess() {
#if defined(__GLIBC__)
    mallopt(M_TRIM_THRESHOLD, 256 * 1024 * 1024);
    mallopt(M_TOP_PAD, 16 * 1024 * 1024);
#endif
}

void initializeMetadataLibrary() {
    static std::once_flag once;
    std::call_once(once, [] {
        const std::map<std::string, std::string> known = knownXmpNamespaces();
        Exiv2::XmpParser::initialize(lockNamespaces, &namespaceMutex());
        rememberStartingXmpPrefixes(known);
        // HEIF, AVIF and CR3 are read through the box format reader, which is off until asked.
        Exiv2::enableBMFF(true);
        Exiv2::LogMsg::setHandler(exiv2Log);
        Exiv2::LogMsg::setLevel(Exiv2::LogMsg::warn);
    });
}

} // namespace tagmoor
