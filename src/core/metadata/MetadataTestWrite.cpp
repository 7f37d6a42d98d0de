// Writing of the property dictionary into a file, through SafeMetadataEdit so that the file is
// replaced only by a complete, verified new one.
#include "metadata/MetadataTest.h"

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
    try {
        SafeMetadataEdit::run(
            path, expected,
            [&](Exiv2::Image& image) {
                PropertyWriter::apply(image, properties, {m_exifKeys, m_iptcKeys, m_xmpKeys},
                                      exifKeys, iptcKeys, xmpKeys);
            },
            m_flushesToDisk);
    } catch (const Exiv2::AnyError& e) {
        qCWarning(lcMetadataWrite).noquote() << QStringLiteral("*** error exiv2 exception '") +
                                                    QString::fromUtf8(e.what()) +
                                                    QStringLiteral("' ***");
    } catch (...) {
        // Anything else (allocation, a broken value) ends the write the same way.
        qCWarning(lcMetadataWrite).noquote() << QStringLiteral("*** error exception ***");
    }
}

} // namespace tagmoor
