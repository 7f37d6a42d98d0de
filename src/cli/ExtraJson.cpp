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
    return json;
}

} // namespace tagmoor::cli
