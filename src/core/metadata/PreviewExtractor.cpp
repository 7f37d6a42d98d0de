#include "metadata/PreviewExtractor.h"

#include "metadata/Exiv2Guard.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/XmpNamespaces.h"

#include <QFile>
#include <QLoggingCategory>

#include <exiv2/exiv2.hpp>

#include <algorithm>

Q_DECLARE_LOGGING_CATEGORY(lcMetadataPreview)
Q_LOGGING_CATEGORY(lcMetadataPreview, "tagmoor.metadata.preview")

namespace tagmoor {

QByteArray PreviewExtractor::embeddedPreview(const QString& path, int minSide) {
    QByteArray bytes;
    guardExiv2(
        [&] {
            auto image = Exiv2::ImageFactory::open(QFile::encodeName(path).toStdString());
            if (!image.get())
                return;
            // The preview loaders open the embedded JPEGs to measure them, and parse their XMP.
            const auto xmpLock = lockXmpToolkit();
            image->readMetadata();
            settleXmpPrefixesAfterRead(*image);
            Exiv2::PreviewManager manager(*image);
            const Exiv2::PreviewPropertiesList list = manager.getPreviewProperties();
            if (list.empty())
                return;
            // The list comes sorted by pixel count, smallest first.
            auto chosen = std::find_if(list.begin(), list.end(), [minSide](const auto& p) {
                return int(std::max(p.width_, p.height_)) >= minSide;
            });
            if (chosen == list.end())
                chosen = std::prev(list.end());
            const Exiv2::PreviewImage preview = manager.getPreviewImage(*chosen);
            bytes = QByteArray(reinterpret_cast<const char*>(preview.pData()), int(preview.size()));
        },
        [&](Exiv2Failure, const QString& what) {
            qCDebug(lcMetadataPreview) << "no preview in" << path << what;
        });
    return bytes;
}

} // namespace tagmoor
