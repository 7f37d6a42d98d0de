#include "shell/Appcast.h"

#include <QXmlStreamReader>

namespace tagmoor {

namespace {

// An attribute by local name, whatever namespace prefix the feed used.
QString attributeNamed(const QXmlStreamAttributes& attrs, QStringView localName) {
    for (const QXmlStreamAttribute& a : attrs) {
        if (a.name() == localName)
            return a.value().toString();
    }
    return {};
}
} // namespace

QList<AppcastItem> parseAppcast(const QByteArray& xml) {
    QList<AppcastItem> items;
    QXmlStreamReader reader(xml);
    std::optional<AppcastItem> current;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement()) {
            const QStringView name = reader.name();
            if (name == QLatin1String("item")) {
                current = AppcastItem{};
            } else if (current && name == QLatin1String("title")) {
                current->title = reader.readElementText(QXmlStreamReader::SkipChildElements);
            } else if (current && name == QLatin1String("version")) {
                current->version = reader.readElementText(QXmlStreamReader::SkipChildElements);
            } else if (current && name == QLatin1String("shortVersionString")) {
                current->shortVersion = reader.readElementText(QXmlStreamReader::SkipChildElements);
            } else if (current && name == QLatin1String("enclosure")) {
                const QXmlStreamAttributes attrs = reader.attributes();
                current->downloadUrl = QUrl(attrs.value(QLatin1String("url")).toString());
                current->length = attrs.value(QLatin1String("length")).toLongLong();
                const QString v = attributeNamed(attrs, u"version");
                if (!v.isEmpty())
                    current->version = v;
                const QString sv = attributeNamed(attrs, u"shortVersionString");
                if (!sv.isEmpty())
                    current->shortVersion = sv;
            }
        } else if (reader.isEndElement() && reader.name() == QLatin1String("item") && current) {
            if (current->version.isEmpty())
                current->version = current->shortVersion;
            if (!current->version.isEmpty())
                items.append(*current);
            current.reset();
        }
    }
    if (reader.hasError())
        return {};
    return items;
}

int compareVersions(const QString& a, const QString& b) {
    const QStringList pa = a.trimmed().split(QLatin1Char('.'));
    const QStringList pb = b.trimmed().split(QLatin1Char('.'));
    const qsizetype n = std::max(pa.size(), pb.size());
    for (qsizetype i = 0; i < n; ++i) {
        const QString x = i < pa.size() ? pa[i] : QStringLiteral("0");
        const QString y = i < pb.size() ? pb[i] : QStringLiteral("0");
        bool okX = false;
        bool okY = false;
        const qint64 nx = x.toLongLong(&okX);
        const qint64 ny = y.toLongLong(&okY);
        if (okX && okY) {
            if (nx != ny)
                return nx < ny ? -1 : 1;
        } else if (const int c = x.compare(y); c != 0) {
            return c < 0 ? -1 : 1;
        }
    }
    return 0;
}

std::optional<AppcastItem> newestUpdate(const QList<AppcastItem>& items,
                                        const QString& currentVersion) {
    std::optional<AppcastItem> best;
    for (const AppcastItem& item : items) {
        const QString v = item.shortVersion.isEmpty() ? item.version : item.shortVersion;
        if (compareVersions(v, currentVersion) <= 0)
            continue;
        if (!best || compareVersions(v, best->shortVersion.isEmpty() ? best->version
                                                                     : best->shortVersion) > 0)
            best = item;
    }
    return best;
}

} // namespace tagmoor
