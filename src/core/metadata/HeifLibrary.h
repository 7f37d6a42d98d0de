#pragma once

#include <QLoggingCategory>
#include <QSize>
#include <QString>

#include <libheif/heif.h>

#include <memory>
#include <optional>
#include <utility>

Q_DECLARE_LOGGING_CATEGORY(lcHeif)

namespace tagmoor {

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
    static std::optional<Heif> load();
};

struct HeifContextFree {
    void operator()(heif_context* c) const { Heif::get()->heif_context_free(c); }
};
struct HeifHandleRelease {
    void operator()(heif_image_handle* h) const { Heif::get()->heif_image_handle_release(h); }
};
struct HeifImageRelease {
    void operator()(heif_image* i) const { Heif::get()->heif_image_release(i); }
};
using HeifContext = std::unique_ptr<heif_context, HeifContextFree>;
using HeifHandle = std::unique_ptr<heif_image_handle, HeifHandleRelease>;

// The file's primary image, with the context that owns it; nothing when libheif can't read it.
std::pair<HeifContext, HeifHandle> openPrimary(const Heif& heif, const QString& path);

// The width and height of a HEIF or AVIF file's primary image, as it is shown (after its
// crop and rotation); nothing when libheif can't read the file.
std::optional<QSize> heifSize(const QString& path);

} // namespace tagmoor
