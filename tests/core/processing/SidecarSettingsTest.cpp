// The window's settings about sidecars and formats, as a run and the process take them.
#include "processing/SidecarSettings.h"
#include "TestSupport.h"
#include "foundation/Settings.h"
#include "metadata/XmpSidecar.h"
#include "shell/ShellFixture.h"
#include "workingset/SupportedExtensions.h"

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

using namespace tagmoor::test;

TEST(SidecarSettings, StoredWordsChooseAndTheFormFillsTheRest) {
    ScratchConfig cfg;
    Settings settings(cfg.settingsFile());
    {
        ValueFormScope scope(ValueForm::standard);
        EXPECT_EQ(sidecarOptionsFrom(settings).write, SidecarWrite::fallback);
        settings.setSidecarWrite("Always");
        settings.setSidecarNaming("base");
        settings.setSidecarStrip("no such word");
        const SidecarOptions options = sidecarOptionsFrom(settings);
        EXPECT_EQ(options.write, SidecarWrite::always);
        EXPECT_EQ(options.naming, SidecarNaming::ReplacingExtension);
        EXPECT_EQ(options.strip, SidecarStrip::strip);

        settings.setClassicExtensionsOnly(true);
        applyProcessSidecarSettings(settings);
        EXPECT_FALSE(hasSupportedExtension("a.heic"));
        setOnlyClassicExtensions(std::nullopt);
        setSidecarsRead(std::nullopt);
    }
    // The described form leaves sidecars alone unless the settings say otherwise.
    Settings fresh(cfg.settingsFile() + ".2");
    EXPECT_EQ(sidecarOptionsFrom(fresh), SidecarOptions{});
    applyProcessSidecarSettings(settings);
    EXPECT_TRUE(sidecarsAreRead());
    setSidecarsRead(std::nullopt);
    setOnlyClassicExtensions(std::nullopt);
}

} // namespace
} // namespace tagmoor
