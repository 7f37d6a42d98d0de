#include "processing/SidecarSettings.h"

#include "foundation/Settings.h"
#include "metadata/XmpSidecar.h"
#include "workingset/SupportedExtensions.h"

namespace tagmoor {

SidecarOptions sidecarOptionsFrom(const Settings& settings) {
    SidecarOptions options = SidecarOptions::frontEndDefault();
    if (const auto word = settings.sidecarWrite())
        if (const auto at = sidecarChoice(*word, sidecarWriteNames()))
            options.write = SidecarWrite(*at);
    if (const auto word = settings.sidecarStrip())
        if (const auto at = sidecarChoice(*word, sidecarStripNames()))
            options.strip = SidecarStrip(*at);
    if (const auto word = settings.sidecarNaming())
        if (const auto at = sidecarChoice(*word, sidecarNamingNames()))
            options.naming = SidecarNaming(*at);
    return options;
}

void applyProcessSidecarSettings(const Settings& settings) {
    setOnlyClassicExtensions(settings.classicExtensionsOnly());
    const auto write = settings.sidecarWrite();
    const auto at = write ? sidecarChoice(*write, sidecarWriteNames()) : std::nullopt;
    setSidecarsRead(at ? std::optional<bool>(SidecarWrite(*at) != SidecarWrite::never)
                       : std::nullopt);
}

bool copiesInStepFrom(const Settings& settings) {
    return settings.copiesInStep().value_or(kCopiesInStepByDefault);
}

} // namespace tagmoor
