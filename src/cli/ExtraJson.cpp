#include "ExtraJson.h"

#include <QJsonArray>

namespace tagmoor::cli {

QJsonObject extraValuesJson(const ExtraValues& values) {
    QJsonObject json;
    const auto putList = [&](const char* name, const QStringList& list) {
        if (!list.isEmpty())
            json.insert(QLatin1String(name), QJsonArray::fromStringList(list));
    };
    putList("keywords", values.shownKeywords());
    QStringList paths = values.keywords.hierarchical;
    for (const QString& entry : values.keywords.tagsList)
        if (const QString path = pathOfTagsListEntry(entry); !paths.contains(path))
            paths << path;
    putList("keywordPaths", paths);
    if (values.rating)
        json.insert(QStringLiteral("rating"), *values.rating);
    if (values.label)
        json.insert(QStringLiteral("label"), *values.label);
    putList("persons", values.persons);
    for (const ExtraTextRow& row : kExtraTextRows)
        if (const auto& text = values.texts[std::size_t(row.text)])
            json.insert(QLatin1String(row.jsonName), *text);
    // The names of the values that came from the photo's XMP sidecar.
    const ExtraSources& from = values.fromSidecar;
    QStringList fromSidecar;
    if (from.keywords)
        fromSidecar << QStringLiteral("keywords") << QStringLiteral("keywordPaths");
    if (from.rating)
        fromSidecar << QStringLiteral("rating");
    if (from.label)
        fromSidecar << QStringLiteral("label");
    if (from.persons)
        fromSidecar << QStringLiteral("persons");
    for (const ExtraTextRow& row : kExtraTextRows)
        if (from.texts[std::size_t(row.text)])
            fromSidecar << QLatin1String(row.jsonName);
    putList("fromSidecar", fromSidecar);
    return json;
}

} // namespace tagmoor::cli
