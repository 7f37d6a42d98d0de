#include "model/Keywords.h"

#include <QCoreApplication>

namespace tagmoor {

QString joinKeywords(const QStringList& keywords) {
    return keywords.join(QStringLiteral(", "));
}

QStringList splitKeywords(const QString& text) {
    QStringList keywords;
    for (const QString& item : text.split(QLatin1Char(','))) {
        const QString keyword = item.trimmed();
        if (!keyword.isEmpty() && !keywords.contains(keyword))
            keywords << keyword;
    }
    return keywords;
}

QStringList keywordsOfValue(const QVariant& value) {
    if (value.typeId() != QMetaType::QVariantList && value.typeId() != QMetaType::QStringList)
        return splitKeywords(value.toString());
    QStringList keywords;
    for (const QString& item : value.toStringList()) {
        const QString keyword = item.trimmed();
        if (!keyword.isEmpty() && !keywords.contains(keyword))
            keywords << keyword;
    }
    return keywords;
}

QString keywordRefusal(const QString& keyword) {
    const qsizetype bytes = keyword.toUtf8().size();
    if (bytes <= kMaxKeywordBytes)
        return {};
    return QCoreApplication::translate("Keywords",
                                       "The keyword \"%1\" is %2 bytes long; a keyword holds at "
                                       "most %3 bytes.")
        .arg(keyword)
        .arg(bytes)
        .arg(kMaxKeywordBytes);
}

} // namespace tagmoor
