#include "metadata/RawThumbnail.h"

#include "metadata/BoundedRawStream.h"

#include <libraw/libraw.h>

#include <memory>

namespace tagmoor {

QImage rawThumbnail(const QString& path, QSize& originalSize) {
    // The stream bounds the parse and the thumbnail's reading, so a damaged file gives up
    // instead of holding the loader.
    BoundedRawStream stream(path);
    auto raw = std::make_unique<LibRaw>();
    if (openBoundedRaw(*raw, stream) != RawOpen::Opened)
        return {};
    const auto& sizes = raw->imgdata.sizes;
    if (sizes.width > 0 && sizes.height > 0) {
        const bool turned = sizes.flip == 5 || sizes.flip == 6;
        originalSize = turned ? QSize(sizes.height, sizes.width) : QSize(sizes.width, sizes.height);
    }
    if (!unpackBoundedThumb(*raw))
        return {};
    int error = 0;
    libraw_processed_image_t* thumb = raw->dcraw_make_mem_thumb(&error);
    if (!thumb)
        return {};
    QImage image;
    if (thumb->type == LIBRAW_IMAGE_JPEG) {
        image = QImage::fromData(thumb->data, int(thumb->data_size), "JPEG");
    } else if (thumb->type == LIBRAW_IMAGE_BITMAP && thumb->colors == 3 && thumb->bits == 8) {
        image = QImage(thumb->data, thumb->width, thumb->height, thumb->width * 3,
                       QImage::Format_RGB888)
                    .copy();
    }
    LibRaw::dcraw_clear_mem(thumb);
    return image;
}

} // namespace tagmoor
