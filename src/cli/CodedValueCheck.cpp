#include "CodedValueCheck.h"

#include "editor/FormPopups.h"

namespace tagmoor::cli {

namespace {

// Long lists (the country codes) are cut after this many values.
constexpr int kListedValues = 30;

QString storedText(const PropertyValue& value) {
    if (auto text = value.text())
        return *text;
    return value.variant().toString();
}

bool isEmpty(const PropertyValue& value) {
    const auto text = value.text();
    return !value.isPresent() || (text && text->trimmed().isEmpty());
}

} // namespace

std::optional<QString> refusedCodedValue(const FormField& field, const CGImageProperties& record) {
    if (field.kind != FormKind::Popup || !FormPopups::isPopup(field.position))
        return std::nullopt;
    const PropertyValue* peeked = field.keyRow().peek(record);
    if (!peeked)
        return std::nullopt;
    const PropertyValue& value = *peeked;
    if (isEmpty(value) || FormPopups::rowOf(field.position, value) > 0)
        return std::nullopt;

    const QStringList texts = FormPopups::rowTexts(field.position);
    QStringList allowed;
    for (int row = 1; row < texts.size(); ++row) {
        const auto stored = FormPopups::valueOfRow(field.position, row);
        if (!stored)
            continue;
        if (allowed.size() == kListedValues) {
            allowed << QStringLiteral("... (%1 in all)").arg(texts.size() - 1);
            break;
        }
        allowed << QStringLiteral("%1 (%2)").arg(storedText(*stored), texts[row]);
    }
    return QStringLiteral("%1 does not take '%2'; its values are: %3")
        .arg(field.name(), storedText(value), allowed.join(QStringLiteral(", ")));
}

} // namespace tagmoor::cli
