#include "exchange/PhotoTemplates.h"

#include "batch/RunValues.h"
#include "model/FormFieldTable.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>

namespace tagmoor {

namespace {

const QRegularExpression& placeholderPattern() {
    static thread_local const QRegularExpression pattern(
        QStringLiteral("\\{(\\w+)(?::([^{}]*))?\\}"));
    return pattern;
}

QString cleanAbsolute(const QString& path) {
    return QDir::cleanPath(QDir::current().absoluteFilePath(path));
}

// What one placeholder stands for; nothing when it names nothing known.
std::optional<QString> valueOf(const QString& name, const QString& argument, bool hasArgument,
                               const PhotoTemplates::Photo& photo) {
    if (name == QLatin1String("filename") && !hasArgument)
        return photo.fileName;
    if (name == QLatin1String("camera") && !hasArgument)
        return photo.camera;
    if (name == QLatin1String("date") && hasArgument && !argument.isEmpty())
        return photo.date ? QLocale::c().toString(*photo.date, argument) : QString();
    if (name == QLatin1String("counter")) {
        if (!hasArgument)
            return QString::number(photo.counter);
        bool ok = false;
        const int width = argument.toInt(&ok);
        if (!ok || width < 1 || width > 12)
            return std::nullopt;
        return QStringLiteral("%1").arg(photo.counter, width, 10, QLatin1Char('0'));
    }
    return std::nullopt;
}

QString textOf(const PropertyValue* value) {
    return value ? value->text().value_or(QString()).trimmed() : QString();
}

} // namespace

PhotoTemplates::PhotoTemplates(const QStringList& photos) {
    m_counters.reserve(photos.size());
    for (qsizetype i = 0; i < photos.size(); ++i)
        m_counters.insert(cleanAbsolute(photos[i]), int(i) + 1);
}

QString PhotoTemplates::fill(const QString& text, const Photo& photo) {
    QString out;
    qsizetype done = 0;
    auto it = placeholderPattern().globalMatch(text);
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        const auto value =
            valueOf(match.captured(1), match.captured(2), match.hasCaptured(2), photo);
        out += text.mid(done, match.capturedStart() - done);
        out += value ? *value : match.captured();
        done = match.capturedEnd();
    }
    return out + text.mid(done);
}

bool PhotoTemplates::holdsPlaceholder(const QString& text) {
    if (!text.contains(QLatin1Char('{')))
        return false;
    // A photo that lacks every fact still shows whether anything was replaced.
    const Photo marker{QStringLiteral("\x01"), std::nullopt, 1, QStringLiteral("\x01")};
    return fill(text, marker) != text;
}

bool PhotoTemplates::neededFor(const RunValues& values) {
    if (!values.writeOptions.standardForm)
        return false;
    for (const FormField& field : formFields()) {
        if (field.kind != FormKind::Text || !values.fieldEditedFlags.test(field.field))
            continue;
        if (holdsPlaceholder(textOf(field.keyRow().peek(values.editedProperties))))
            return true;
    }
    const ExtraEdits& extras = values.extras;
    return std::any_of(extras.texts.begin(), extras.texts.end(),
                       [](const auto& text) { return text && holdsPlaceholder(*text); }) ||
           std::any_of(extras.addKeywords.begin(), extras.addKeywords.end(), holdsPlaceholder);
}

void PhotoTemplates::addTo(RunValues& values, const QStringList& photos, bool photoValuesMayHold) {
    if (!values.writeOptions.standardForm || !(photoValuesMayHold || neededFor(values)))
        return;
    values.photoValues.push_back(std::make_shared<PhotoTemplates>(photos));
}

QStringList PhotoTemplates::markedPhotos(const QList<CGImageProperties>& list) {
    QStringList paths;
    for (const CGImageProperties& record : list) {
        if (record.isSelected)
            paths << record.path();
    }
    return paths;
}

PhotoTemplates::Photo PhotoTemplates::photoOf(const CGImageProperties& record, int counter) {
    Photo photo;
    const QString path = record.path();
    photo.fileName = QFileInfo(path).fileName();
    photo.counter = counter;
    if (const PropertyValue* original = formField(Field::DateTimeOriginal).keyRow().peek(record)) {
        photo.date = original->date();
    }
    if (!photo.date && !path.isEmpty()) {
        const QDateTime modified = QFileInfo(path).lastModified();
        if (modified.isValid())
            photo.date = modified;
    }
    const QString make = textOf(formField(Field::Make).keyRow().peek(record));
    const QString model = textOf(formField(Field::CameraModalName).keyRow().peek(record));
    photo.camera =
        make.isEmpty() || model.isEmpty() ? make + model : make + QLatin1Char(' ') + model;
    return photo;
}

void PhotoTemplates::adjust(const CGImageProperties& record, RunValues& values) const {
    if (!values.writeOptions.standardForm)
        return;
    const Photo photo = photoOf(record, m_counters.value(cleanAbsolute(record.path()), 0));
    values.editedProperties = withKeyGroups(values.editedProperties);
    for (const FormField& field : formFields()) {
        if (field.kind != FormKind::Text || !values.fieldEditedFlags.test(field.field))
            continue;
        PropertyValue& value = *field.keyRow().field(values.editedProperties);
        if (const auto text = value.text(); text && text->contains(QLatin1Char('{')))
            value = PropertyValue(fill(*text, photo));
    }
    // The texts beyond the form and the keywords added take placeholders as well.
    for (auto& text : values.extras.texts) {
        if (text && text->contains(QLatin1Char('{')))
            text = fill(*text, photo);
    }
    for (QString& keyword : values.extras.addKeywords) {
        if (keyword.contains(QLatin1Char('{')))
            keyword = fill(keyword, photo);
    }
}

} // namespace tagmoor
