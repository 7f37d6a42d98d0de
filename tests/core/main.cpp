// Test entry point: one Qt core application for the whole run, Exiv2 set up before any
// thread starts, and the locale pinned so that date and region texts are stable.
#include "XmpToolkitWatch.h"
#include "foundation/ValueForm.h"
#include "metadata/MetadataLibrary.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <unicode/locid.h>

#include <cstdlib>

namespace {
// After all tests of the run: no step reached Exiv2's XMP toolkit without its lock.
class XmpToolkitGuard : public testing::Environment {
public:
    void TearDown() override {
        EXPECT_EQ(tagmoor::unguardedXmpToolkitUses(), 0u);
        EXPECT_EQ(tagmoor::test::xmpParsesWithoutLock(), 0u);
    }
};
} // namespace

int main(int argc, char** argv) {
    setenv("TZ", "UTC", 1);
    tzset();
    tagmoor::initializeMetadataLibrary();
    // The journals of the runs the tests make (and of the command lines they start) go to a
    // scratch folder, not to the user's.
    QTemporaryDir dataHome;
    setenv("XDG_DATA_HOME", dataHome.path().toLocal8Bit().constData(), 1);
    QCoreApplication app(argc, argv);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale("en_US"), status);
    // The suite's older tests check the described form; each test of the standard form sets
    // it with a ValueFormScope (and gives --form standard to the command line).
    tagmoor::setValueForm(tagmoor::ValueForm::described);
    testing::InitGoogleTest(&argc, argv);
    testing::AddGlobalTestEnvironment(new XmpToolkitGuard);
    return RUN_ALL_TESTS();
}
