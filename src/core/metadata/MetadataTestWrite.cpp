// Writing of the property dictionary into a file, through SafeMetadataEdit so that the file is
// replaced only by a complete, verified new one.
#include "metadata/MetadataTest.h"

#include "metadata/Exiv2Guard.h"
#include "metadata/PropertyWriter.h"
#include "metadata/SafeMetadataEdit.h"

#include <QFile>

#include <exiv2/exiv2.hpp>

namespace tagmoor {

void MetadataTest::setImagePropertiesAll(const QString& path, const QVariantMap& properties,
                                         const QStringList& exifKeys, const QStringList& iptcKeys,
                                         const QStringList& xmpKeys,
                                         const std::optional<FileStamp>& expected) const {
    if (QFile::decodeName(QFile::encodeName(path)) != path)
        return;
    guardExiv2(
        [&] {
            SafeMetadataEdit::run(
                path, expected,
                [&](Exiv2::Image& image) {
                    PropertyWriter::apply(image, properties, {m_exifKeys, m_iptcKeys, m_xmpKeys},
                                          exifKeys, iptcKeys, xmpKeys);
                },
                m_flushesToDisk);
        },
        [](Exiv2Failure kind, const QString& what) {
            // Anything else than Exiv2's own errors (allocation, a broken value) ends the write
            // the same way, under the shorter text.
            if (kind == Exiv2Failure::Library)
                qCWarning(lcMetadataWrite).noquote()
                    << QStringLiteral("*** error exiv2 exception '") + what +
                           QStringLiteral("' ***");
            else
                qCWarning(lcMetadataWrite).noquote() << QStringLiteral("*** error exception ***");
        });
}

} // namespace tagmoor
