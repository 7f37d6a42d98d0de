// Watches every parse and serialisation of XMP in the test process: Exiv2's own entry points
// are taken over here and pass on to the library's, after noting a call from a thread that does
// not hold the toolkit lock. The toolkit keeps one namespace table for the process; a parse on a
// thread without the lock, beside another thread's writing, can lose a photo's values or change
// the prefixes its packet is written with, and leaves no trace otherwise.
#include "XmpToolkitWatch.h"

#include "metadata/MetadataLibrary.h"

#include <exiv2/exiv2.hpp>

#include <dlfcn.h>
#include <execinfo.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace tagmoor::test {
namespace {
std::atomic<std::size_t> g_unguarded{0};

void noteToolkitUse(const char* what) {
    if (xmpToolkitHeldHere())
        return;
    // The first few are told with where they came from.
    if (g_unguarded.fetch_add(1) < 3) {
        std::fprintf(stderr, "XMP %s without the toolkit lock, from:\n", what);
        void* frames[24];
        backtrace_symbols_fd(frames, backtrace(frames, 24), STDERR_FILENO);
    }
}

template <typename Fn> Fn realFunction(const char* symbol) {
    void* found = dlsym(RTLD_NEXT, symbol);
    if (!found) {
        std::fprintf(stderr, "Exiv2 has no %s\n", symbol);
        std::abort();
    }
    return reinterpret_cast<Fn>(found);
}
} // namespace

std::size_t xmpParsesWithoutLock() {
    return g_unguarded.load();
}

} // namespace tagmoor::test

namespace Exiv2 {

int XmpParser::decode(XmpData& xmpData, const std::string& xmpPacket) {
    using Decode = int (*)(XmpData&, const std::string&);
    static const Decode real = tagmoor::test::realFunction<Decode>(
        "_ZN5Exiv29XmpParser6decodeERNS_7XmpDataERKNSt7__cxx1112basic_stringIcSt11char_"
        "traitsIcESaIcEEE");
    tagmoor::test::noteToolkitUse("parsed");
    return real(xmpData, xmpPacket);
}

int XmpParser::encode(std::string& xmpPacket, const XmpData& xmpData, uint16_t formatFlags,
                      uint32_t padding) {
    using Encode = int (*)(std::string&, const XmpData&, uint16_t, uint32_t);
    static const Encode real = tagmoor::test::realFunction<Encode>(
        "_ZN5Exiv29XmpParser6encodeERNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEERKNS_"
        "7XmpDataEtj");
    // An empty block is written without the toolkit.
    if (!xmpData.empty())
        tagmoor::test::noteToolkitUse("written");
    return real(xmpPacket, xmpData, formatFlags, padding);
}

} // namespace Exiv2
