#include "metadata/HeifLibrary.h"

#include <QFile>

#include <dlfcn.h>

Q_LOGGING_CATEGORY(lcHeif, "tagmoor.metadata.heif")

namespace tagmoor {

std::optional<Heif> Heif::load() {
    void* library = nullptr;
    for (const char* name : {"libheif.so.1", "libheif.so"})
        if ((library = ::dlopen(name, RTLD_NOW | RTLD_LOCAL)))
            break;
    if (!library) {
        qCWarning(lcHeif) << "HEIF pictures can't be read: libheif is missing";
        return std::nullopt;
    }
    Heif heif;
    bool complete = true;
#define TAGMOOR_HEIF_RESOLVE(name)                                                                 \
    heif.name = reinterpret_cast<decltype(&::name)>(::dlsym(library, #name));                      \
    complete = complete && heif.name;
    TAGMOOR_HEIF_FUNCTIONS(TAGMOOR_HEIF_RESOLVE)
#undef TAGMOOR_HEIF_RESOLVE
    if (!complete) {
        qCWarning(lcHeif) << "HEIF pictures can't be read: libheif lacks a function";
        return std::nullopt;
    }
    // Never unloaded: the decoders it starts stay for the life of the program.
    return heif;
}

std::pair<HeifContext, HeifHandle> openPrimary(const Heif& heif, const QString& path) {
    HeifContext context(heif.heif_context_alloc());
    if (!context)
        return {};
    const heif_error read = heif.heif_context_read_from_file(
        context.get(), QFile::encodeName(path).constData(), nullptr);
    if (read.code != heif_error_Ok) {
        qCDebug(lcHeif) << "not read:" << path << read.message;
        return {};
    }
    heif_image_handle* primary = nullptr;
    if (heif.heif_context_get_primary_image_handle(context.get(), &primary).code != heif_error_Ok)
        return {};
    return {std::move(context), HeifHandle(primary)};
}

std::optional<QSize> heifSize(const QString& path) {
    const Heif* heif = Heif::get();
    if (!heif)
        return std::nullopt;
    const auto [context, primary] = openPrimary(*heif, path);
    if (!primary)
        return std::nullopt;
    const int width = heif->heif_image_handle_get_width(primary.get());
    const int height = heif->heif_image_handle_get_height(primary.get());
    if (width <= 0 || height <= 0)
        return std::nullopt;
    return QSize(width, height);
}

} // namespace tagmoor
