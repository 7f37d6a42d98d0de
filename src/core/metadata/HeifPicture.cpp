#include "metadata/HeifPicture.h"

#include <QFile>
#include <QLoggingCategory>

#include <libheif/heif.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include <dlfcn.h>

Q_DECLARE_LOGGING_CATEGORY(lcHeif)
Q_LOGGING_CATEGORY(lcHeif, "tagmoor.metadata.heif")

namespace tagmoor {

namespace {

// libheif, loaded the first time a HEIF picture is read rather than with the program: loading it
// starts its decoders, which costs every start of the program some milliseconds, though most
// runs never meet a HEIF file. Its functions are named as in its header.
struct Heif {
#define TAGMOOR_HEIF_FUNCTIONS(X)                                                                  \
    X(heif_context_alloc)                                                                          \
    X(heif_context_free)                                                                           \
    X(heif_context_read_from_file)                                                                 \
    X(heif_context_get_primary_image_handle)                                                       \
    X(heif_image_handle_release)                                                                   \
    X(heif_image_handle_get_width)                                                                 \
    X(heif_image_handle_get_height)                                                                \
    X(heif_image_handle_get_number_of_thumbnails)                                                  \
    X(heif_image_handle_get_list_of_thumbnail_IDs)                                                 \
    X(heif_image_handle_get_thumbnail)                                                             \
    X(heif_decode_image)                                                                           \
    X(heif_image_release)                                                                          \
    X(heif_image_get_plane_readonly)                                                               \
    X(heif_image_get_width)                                                                        \
    X(heif_image_get_height)
#define TAGMOOR_HEIF_POINTER(name) decltype(&::name) name = nullptr;
    TAGMOOR_HEIF_FUNCTIONS(TAGMOOR_HEIF_POINTER)
#undef TAGMOOR_HEIF_POINTER

    // The library with all its functions, or nothing when it is missing.
    static const Heif* get() {
        static const std::optional<Heif> loaded = load();
        return loaded ? &*loaded : nullptr;
    }

private:
    static std::optional<Heif> load() {
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
};

struct ContextFree {
    void operator()(heif_context* c) const { Heif::get()->heif_context_free(c); }
};
struct HandleRelease {
    void operator()(heif_image_handle* h) const { Heif::get()->heif_image_handle_release(h); }
};
struct ImageRelease {
    void operator()(heif_image* i) const { Heif::get()->heif_image_release(i); }
};
using Context = std::unique_ptr<heif_context, ContextFree>;
using Handle = std::unique_ptr<heif_image_handle, HandleRelease>;

// The file's primary image, with the context that owns it.
std::pair<Context, Handle> openPrimary(const Heif& heif, const QString& path) {
    Context context(heif.heif_context_alloc());
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
    return {std::move(context), Handle(primary)};
}

QImage decoded(const Heif& heif, const heif_image_handle* handle) {
    heif_image* raw = nullptr;
    const heif_error error = heif.heif_decode_image(handle, &raw, heif_colorspace_RGB,
                                                    heif_chroma_interleaved_RGBA, nullptr);
    if (error.code != heif_error_Ok) {
        qCDebug(lcHeif) << "not decoded:" << error.message;
        return {};
    }
    const std::unique_ptr<heif_image, ImageRelease> image(raw);
    int stride = 0;
    const uint8_t* plane =
        heif.heif_image_get_plane_readonly(raw, heif_channel_interleaved, &stride);
    const int width = heif.heif_image_get_width(raw, heif_channel_interleaved);
    const int height = heif.heif_image_get_height(raw, heif_channel_interleaved);
    if (!plane || width <= 0 || height <= 0)
        return {};
    return QImage(plane, width, height, stride, QImage::Format_RGBA8888).copy();
}

} // namespace

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

QImage heifPicture(const QString& path, int maxSide, QSize& originalSize) {
    const Heif* heif = Heif::get();
    if (!heif)
        return {};
    const auto [context, primary] = openPrimary(*heif, path);
    if (!primary)
        return {};
    const auto sideOf = [heif](const heif_image_handle* handle) {
        return std::max(heif->heif_image_handle_get_width(handle),
                        heif->heif_image_handle_get_height(handle));
    };
    originalSize = QSize(heif->heif_image_handle_get_width(primary.get()),
                         heif->heif_image_handle_get_height(primary.get()));
    // A stored thumbnail spares decoding the whole picture, when it is large enough.
    const int count = heif->heif_image_handle_get_number_of_thumbnails(primary.get());
    std::vector<heif_item_id> ids(std::size_t(std::max(count, 0)));
    heif->heif_image_handle_get_list_of_thumbnail_IDs(primary.get(), ids.data(), count);
    Handle best;
    for (const heif_item_id id : ids) {
        heif_image_handle* thumbnail = nullptr;
        if (heif->heif_image_handle_get_thumbnail(primary.get(), id, &thumbnail).code !=
            heif_error_Ok)
            continue;
        Handle candidate(thumbnail);
        const int side = sideOf(thumbnail);
        if (side >= maxSide && (!best || side < sideOf(best.get())))
            best = std::move(candidate);
    }
    return decoded(*heif, best ? best.get() : primary.get());
}

} // namespace tagmoor
