#include "SidecarArguments.h"

#include "metadata/XmpSidecar.h"
#include "workingset/SupportedExtensions.h"

#include <QStringList>

#include <optional>

namespace tagmoor::cli {

namespace {

bool refuse(QString* error, const QString& arg, const QStringList& names, const QString& value) {
    *error = QStringLiteral("%1 is %2, not '%3'").arg(arg, names.join(QLatin1Char('|')), value);
    return false;
}

} // namespace

bool isSidecarOption(const QString& arg) {
    return arg == QLatin1String("--sidecar") || arg == QLatin1String("--sidecar-strip") ||
           arg == QLatin1String("--sidecar-name") || arg == QLatin1String("--formats");
}

bool takeSidecarOption(const QString& arg, const QString& value, RunValues& values,
                       QString* error) {
    if (arg == QLatin1String("--sidecar")) {
        const QStringList& names = sidecarWriteNames();
        const auto at = sidecarChoice(value, names);
        if (!at)
            return refuse(error, arg, names, value);
        values.sidecar.write = SidecarWrite(*at);
        // Asked for, sidecars are read in either form, so that what is written follows them.
        setSidecarsRead(values.sidecar.write != SidecarWrite::never);
        return true;
    }
    if (arg == QLatin1String("--sidecar-strip")) {
        const QStringList& names = sidecarStripNames();
        const auto at = sidecarChoice(value, names);
        if (!at)
            return refuse(error, arg, names, value);
        values.sidecar.strip = SidecarStrip(*at);
        return true;
    }
    if (arg == QLatin1String("--sidecar-name")) {
        const QStringList& names = sidecarNamingNames();
        const auto at = sidecarChoice(value, names);
        if (!at)
            return refuse(error, arg, names, value);
        values.sidecar.naming = SidecarNaming(*at);
        return true;
    }
    static const QStringList names{"all", "classic"};
    const auto at = sidecarChoice(value, names);
    if (!at)
        return refuse(error, arg, names, value);
    setOnlyClassicExtensions(*at == 1);
    return true;
}

QString sidecarHelp() {
    return QStringLiteral(
        "Sidecars and formats:\n"
        "  --sidecar never|fallback|always|both\n"
        "                       where the edit goes beside the photo: fallback (the\n"
        "                       default) writes an XMP sidecar only for a photo whose format\n"
        "                       cannot be written (HEIC, AVIF, CR3, JPEG XL, RW2, ...);\n"
        "                       always writes the sidecar only and leaves the photo's bytes\n"
        "                       as they are; both writes photo and sidecar; never leaves\n"
        "                       sidecars alone (the default of --form described).\n"
        "                       A sidecar is found as NAME.EXT.xmp or NAME.xmp, its values\n"
        "                       are read over the photo's, and a copy or a renamed copy\n"
        "                       takes it along under its new name.\n"
        "  --sidecar-strip keep|strip|remove\n"
        "                       with --strip xmp: empty the sidecar (strip, the default),\n"
        "                       remove it, or keep it\n"
        "  --sidecar-name ext|base\n"
        "                       the name of a new sidecar: NAME.EXT.xmp (ext, the default)\n"
        "                       or NAME.xmp (base)\n"
        "  --formats all|classic\n"
        "                       classic accepts only the 39 classic extensions (the default\n"
        "                       of --form described); all adds HEIC/HEIF, AVIF, JPEG XL,\n"
        "                       WebP, CR3 and RW2\n"
        "\n");
}

} // namespace tagmoor::cli
