// The runner of the screen tests: every test class is linked in and registers itself; the first
// argument names the class to run, the others go to Qt Test (-functions, a test function's name).
// One class per process, so that each starts from a fresh application as it always did.
#include "AppTestSupport.h"

#include <QApplication>

#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace tagmoor::test {
namespace {

struct AppTestEntry {
    AppTestMaker make = nullptr;
    void (*prepare)() = nullptr;
};

// Filled while the program's statics are set up, before main.
std::map<std::string, AppTestEntry>& appTests() {
    static std::map<std::string, AppTestEntry> tests;
    return tests;
}

int listAppTests(const char* asked) {
    if (asked)
        std::fprintf(stderr, "no screen test named \"%s\"; there are:\n", asked);
    else
        std::fprintf(stderr, "usage: tagmoor_app_tests CLASS [Qt Test options]; the classes:\n");
    for (const auto& [name, entry] : appTests())
        std::fprintf(stderr, "  %s\n", name.c_str());
    return 2;
}

} // namespace

int registerAppTest(const char* name, AppTestMaker make, void (*prepare)()) {
    if (!appTests().emplace(name, AppTestEntry{make, prepare}).second) {
        std::fprintf(stderr, "screen test %s is registered twice\n", name);
        std::abort();
    }
    return int(appTests().size());
}

} // namespace tagmoor::test

int main(int argc, char** argv) {
    using namespace tagmoor::test;
    if (argc < 2 || argv[1][0] == '-')
        return listAppTests(nullptr);
    const auto found = appTests().find(argv[1]);
    if (found == appTests().end())
        return listAppTests(argv[1]);
    // The class name is taken out, so that Qt Test sees only its own options.
    std::vector<char*> args{argv[0]};
    args.insert(args.end(), argv + 2, argv + argc);
    int testArgc = int(args.size());
    args.push_back(nullptr);

    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (found->second.prepare)
        found->second.prepare();
    // The metadata library is started once, before any thread.
    tagmoor::initializeMetadataLibrary();
    QApplication app(testArgc, args.data());
    QStandardPaths::setTestModeEnabled(true);
    const std::unique_ptr<QObject> test = found->second.make();
    const int failed = QTest::qExec(test.get(), testArgc, args.data());
    // No step of the class reached Exiv2's XMP toolkit without its lock.
    if (const std::size_t unguarded = tagmoor::unguardedXmpToolkitUses()) {
        std::fprintf(stderr, "FAIL: the XMP toolkit was used %zu times without its lock\n",
                     unguarded);
        return failed + 1;
    }
    return failed;
}
