#include "metadata/HeifPicture.h"

#include <QFile>
#include <QLoggingCategory>

#include <libheif/heif.h>

#include <algorithm>
#include <memory>
#include <vector>

Q_DECLARE_LOGGING_CATEGORY(lcHeif)
Q_LOGGING_CATEGORY(lcHeif, "tagmoor.metadata.heif")

namespace tagmoor {

namespace {

struct ContextFree {
    void operator()(heif_context* c) const { heif_context_free(c); }
};
struct HandleRelease {
    void operator()(heif_image_handle* h) const { heif_image_handle_release(h); }
};
struct ImageRelease {
    void operator()(heif_image* i) const { heif_image_release(i); }
};
using Context = std::unique_ptr<heif_context, ContextFree>;
using Handle = std::unique_ptr<heif_image_handle, HandleRelease>;

// The file's primary image, with the context that owns it.
std::pair<Context, Handle> openPrimary(const QString& path) {
    Context context(heif_context_alloc());
    if (!context)
        return {};
    const heif_error read =
        heif_context_read_from_file(context.get(), QFile::encodeName(path).constData(), nullptr);
    if (read.code != heif_error_Ok) {
        qCDebug(lcHeif) << "not read:" << path << read.message;
        return {};
    }
    heif_image_handle* primary = nullptr;
    if (heif_context_get_primary_image_handle(context.get(), &primary).code != heif_error_Ok)
        return {};
    return {std::move(context), Handle(primary)};
}

QImage decoded(const heif_image_handle* handle) {
    heif_image* raw = nullptr;
    const heif_error error =
        heif_decode_image(handle, &raw, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, nullptr);
    if (error.code != heif_error_Ok) {
        qCDebug(lcHeif) << "not decoded:" << error.message;
        return {};
    }
    const std::unique_ptr<heif_image, ImageRelease> image(raw);
    int stride = 0;
    const uint8_t* plane = heif_image_get_plane_readonly(raw, heif_channel_interleaved, &stride);
    const int width = heif_image_get_width(raw, heif_channel_interleaved);
    const int height = heif_image_get_height(raw, heif_channel_interleaved);
    if (!plane || width <= 0 || height <= 0)
        return {};
    return QImage(plane, width, height, stride, QImage::Format_RGBA8888).copy();
}

} // namespace

std::optional<QSize> heifSize(const QString& path) {
    const auto [context, primary] = openPrimary(path);
    if (!primary)
        return std::nullopt;
    const int width = heif_image_handle_get_width(primary.get());
    const int height = heif_image_handle_get_height(primary.get());
    if (width <= 0 || height <= 0)
        return std::nullopt;
    return QSize(width, height);
}

QImage heifPicture(const QString& path, int maxSide, QSize& originalSize) {
    const auto [context, primary] = openPrimary(path);
    if (!primary)
        return {};
    originalSize = QSize(heif_image_handle_get_width(primary.get()),
                         heif_image_handle_get_height(primary.get()));
    // A stored thumbnail spares decoding the whole picture, when it is large enough.
    const int count = heif_image_handle_get_number_of_thumbnails(primary.get());
    std::vector<heif_item_id> ids(std::size_t(std::max(count, 0)));
    heif_image_handle_get_list_of_thumbnail_IDs(primary.get(), ids.data(), count);
    Handle best;
    for (const heif_item_id id : ids) {
        heif_image_handle* thumbnail = nullptr;
        if (heif_image_handle_get_thumbnail(primary.get(), id, &thumbnail).code != heif_error_Ok)
            continue;
        Handle candidate(thumbnail);
        const int side = std::max(heif_image_handle_get_width(thumbnail),
                                  heif_image_handle_get_height(thumbnail));
        const int bestSide = best ? std::max(heif_image_handle_get_width(best.get()),
                                             heif_image_handle_get_height(best.get()))
                                  : 0;
        if (side >= maxSide && (!best || side < bestSide))
            best = std::move(candidate);
    }
    return decoded(best ? best.get() : primary.get());
}

} // namespace tagmoor
