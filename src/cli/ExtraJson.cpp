#include "ExtraJson.h"

#include "foundation/JsonText.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <variant>
#include <vector>

namespace tagmoor::cli {

namespace {

struct Entry {
    const char* key;
    std::variant<int, QString, QStringList> value;
};

void appendValue(std::string& out, const std::variant<int, QString, QStringList>& value) {
    if (const int* number = std::get_if<int>(&value)) {
        char digits[16];
        const auto end = std::to_chars(digits, digits + sizeof digits, *number).ptr;
        out.append(digits, std::size_t(end - digits));
    } else if (const QString* text = std::get_if<QString>(&value)) {
        appendJsonString(out, *text);
    } else {
        appendJsonStrings(out, std::get<QStringList>(value));
    }
}

} // namespace

bool appendExtraValuesJson(std::string& out, const ExtraValues& values) {
    std::vector<Entry> entries;
    const auto putList = [&](const char* name, QStringList list) {
        if (!list.isEmpty())
            entries.push_back({name, std::move(list)});
    };
    putList("keywords", values.shownKeywords());
    QStringList paths = values.keywords.hierarchical;
    for (const QString& entry : values.keywords.tagsList)
        if (const QString path = pathOfTagsListEntry(entry); !paths.contains(path))
            paths << path;
    putList("keywordPaths", std::move(paths));
    if (values.rating)
        entries.push_back({"rating", *values.rating});
    if (values.label)
        entries.push_back({"label", *values.label});
    putList("persons", values.persons);
    for (const ExtraTextRow& row : kExtraTextRows)
        if (const auto& text = values.texts[std::size_t(row.text)])
            entries.push_back({row.jsonName, *text});
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
    putList("fromSidecar", std::move(fromSidecar));
    if (entries.empty())
        return false;

    // The keys are ASCII, so byte order is the code-unit order a JSON object keeps.
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return std::strcmp(a.key, b.key) < 0; });
    out += '{';
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i > 0)
            out += ',';
        out += '"';
        out += entries[i].key;
        out += "\":";
        appendValue(out, entries[i].value);
    }
    out += '}';
    return true;
}

} // namespace tagmoor::cli
