#include "metadata/HeifPicture.h"

#include "metadata/HeifLibrary.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace tagmoor {

namespace {

QImage decoded(const Heif& heif, const heif_image_handle* handle) {
    heif_image* raw = nullptr;
    const heif_error error = heif.heif_decode_image(handle, &raw, heif_colorspace_RGB,
                                                    heif_chroma_interleaved_RGBA, nullptr);
    if (error.code != heif_error_Ok) {
        qCDebug(lcHeif) << "not decoded:" << error.message;
        return {};
    }
    const std::unique_ptr<heif_image, HeifImageRelease> image(raw);
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
    HeifHandle best;
    for (const heif_item_id id : ids) {
        heif_image_handle* thumbnail = nullptr;
        if (heif->heif_image_handle_get_thumbnail(primary.get(), id, &thumbnail).code !=
            heif_error_Ok)
            continue;
        HeifHandle candidate(thumbnail);
        const int side = sideOf(thumbnail);
        if (side >= maxSide && (!best || side < sideOf(best.get())))
            best = std::move(candidate);
    }
    return decoded(*heif, best ? best.get() : primary.get());
}

} // namespace tagmoor
