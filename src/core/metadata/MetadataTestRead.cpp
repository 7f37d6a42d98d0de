// The reading half of the bridge: every tag of a file into three plain dictionaries.
#include "metadata/MetadataBlockReader.h"
#include "metadata/MetadataTest.h"

namespace tagmoor {

std::optional<QVariantMap> MetadataTest::readAllPropertiesFrom(const QString& path) const {
    QVariantMap exif, iptc, xmp;
    const auto outcome = MetadataBlockReader::read(path, [&](KeyBlock block, const std::string& key,
                                                             QVariant&& value) {
        QVariantMap& target = block == KeyBlock::Exif ? exif : block == KeyBlock::Iptc ? iptc : xmp;
        target.insert(QString::fromStdString(key), std::move(value));
    });
    switch (outcome) {
    case MetadataBlockReader::Outcome::UnencodablePath:
        return QVariantMap{};
    case MetadataBlockReader::Outcome::Failed:
        return std::nullopt;
    case MetadataBlockReader::Outcome::Read:
        break;
    }
    return QVariantMap{{QStringLiteral("exif"), exif},
                       {QStringLiteral("iptc"), iptc},
                       {QStringLiteral("xmp"), xmp}};
}

QVariantMap MetadataTest::readJSONStringFrom(const QString& path) const {
    return MetadataBlockReader::readJsonShaped(path);
}

} // namespace tagmoor
