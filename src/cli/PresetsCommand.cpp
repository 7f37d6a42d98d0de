// tagmoor-cli presets: the application's saved presets from the command line.
#include "PresetsCommand.h"

#include "Commands.h"
#include "DateRuleArgument.h"

#include "batch/FormSnapshot.h"
#include "editor/FieldDisplay.h"
#include "editor/FieldValueCheck.h"
#include "foundation/Settings.h"
#include "model/FormFieldTable.h"
#include "presets/PresetExtras.h"
#include "presets/PresetForm.h"
#include "presets/PresetJson.h"
#include "presets/PresetPhoto.h"
#include "presets/PresetStore.h"

#include <QCoreApplication>
#include <QSaveFile>
#include <QTextStream>

#include <algorithm>

namespace tagmoor::cli {

namespace {

const char* kPresetsUsage =
    "usage: tagmoor-cli presets COMMAND ...\n"
    "\n"
    "The presets of the application (the same store the window keeps), by name:\n"
    "  list                      print the names, one a line, in the window's order\n"
    "  show NAME                 print the preset as JSON (the form of export)\n"
    "  save NAME [--replace] (--set FIELD=VALUE | --date FIELD=RULE)...\n"
    "                            store a preset made of the same --set and --date options\n"
    "                            that 'apply' takes; --replace gives an existing preset of\n"
    "                            that name the new values\n"
    "  export NAME FILE          write the preset to FILE as JSON\n"
    "  import FILE               add the preset of a JSON file written by export\n"
    "  remove NAME               remove the preset\n"
    "\n"
    "Names are compared without regard to capitals, as the window does. A preset keeps the\n"
    "fields that hold a value: an empty text or a zero does not make part of one. The window\n"
    "may stay open: it takes in what is changed here, and neither drops what the other saved.\n"
    "\n"
    "exit status: 0 done, 2 bad arguments, an unknown name or a file that is no preset\n"
    "(nothing is changed then), 1 the store could not be written\n";

// The preset store of the user, as the application opens it.
struct UserPresets {
    Settings settings;
    PresetStore store{settings};

    // Loads the list; a damaged store is told (it loads empty, its block kept aside).
    UserPresets() {
        store.setSaveDelay(0);
        const PresetStore::LoadReport report = store.load();
        if (report.damaged)
            QTextStream(stderr) << "tagmoor-cli presets: the stored presets could not be read; "
                                   "they are kept as "
                                << report.keptAs << " and the list starts empty\n";
        for (const RefusedPreset& refused : report.refused)
            QTextStream(stderr) << "tagmoor-cli presets: preset " << refused.position + 1
                                << (refused.name.isEmpty() ? QString() : " '" + refused.name + "'")
                                << " is left out: " << refused.reason << '\n';
        if (!report.refused.isEmpty())
            QTextStream(stderr) << "tagmoor-cli presets: the file as it was is kept as "
                                << report.keptAs << '\n';
    }

    qsizetype find(const QString& name) const {
        const QList<ActualPreset>& list = store.presets();
        for (qsizetype i = 0; i < list.size(); ++i)
            if (list[i].name.value_or(QString()) == name)
                return i;
        for (qsizetype i = 0; i < list.size(); ++i)
            if (list[i].name.value_or(QString()).compare(name, Qt::CaseInsensitive) == 0)
                return i;
        return -1;
    }

    // Writes the changes now; false when the store could not be written.
    bool save() {
        bool ok = true;
        QObject::connect(&store, &PresetStore::saveFinished, [&ok](bool done) { ok = ok && done; });
        store.waitForSaves();
        QCoreApplication::processEvents();
        return ok;
    }
};

int usageError(const QString& message) {
    QTextStream(stderr) << "tagmoor-cli presets: " << message
                        << "\nRun 'tagmoor-cli presets --help' for the commands.\n";
    return 2;
}

int unknownName(const QString& name) {
    QTextStream(stderr) << "tagmoor-cli presets: no preset named '" << name
                        << "' (see 'tagmoor-cli presets list'); nothing was changed\n";
    return 2;
}

int saved(UserPresets& presets, const QString& what) {
    if (!presets.save()) {
        QTextStream(stderr) << "tagmoor-cli presets: the presets could not be written to "
                            << presets.settings.fileName() << '\n';
        return 1;
    }
    QTextStream(stdout) << what << '\n';
    return 0;
}

// The --set and --date options of `presets save`, read as `apply` reads them, into the
// record and rules a preset keeps.
std::optional<ActualPreset> presetFromOptions(const QStringList& args, QString* error) {
    // Only what the options give: every other field stays absent.
    CGImageProperties values = makeEmptyRecord(std::nullopt);
    OriginalFinalDate rules;
    bool any = false;
    for (int i = 0; i < args.size(); ++i) {
        QString arg = args[i];
        QString value;
        if (arg.contains(QLatin1Char('=')) && arg.startsWith(QLatin1String("--"))) {
            value = arg.mid(arg.indexOf(QLatin1Char('=')) + 1);
            arg = arg.left(arg.indexOf(QLatin1Char('=')));
        } else if (i + 1 < args.size()) {
            value = args[++i];
        } else {
            *error = QStringLiteral("%1 needs a value").arg(arg);
            return std::nullopt;
        }
        if (arg == QLatin1String("--set")) {
            const int eq = int(value.indexOf(QLatin1Char('=')));
            const FormField* field = eq > 0 ? findFormField(value.left(eq)) : nullptr;
            if (!field) {
                *error = eq > 0 ? QStringLiteral("--set: no field named '%1'").arg(value.left(eq))
                                : QStringLiteral("--set wants FIELD=VALUE, not '%1'").arg(value);
                return std::nullopt;
            }
            if (auto problem = FormSnapshot::setText(values, *field, value.mid(eq + 1))) {
                *error = QStringLiteral("--set: %1").arg(*problem);
                return std::nullopt;
            }
            if (auto refused = refusedFieldValue(*field, values)) {
                *error = QStringLiteral("--set: %1").arg(*refused);
                return std::nullopt;
            }
            if (!presetHoldsValue(values, field->field)) {
                *error = QStringLiteral("--set %1: a preset keeps only fields with a value; an "
                                        "empty text or a zero would be lost")
                             .arg(value.left(eq));
                return std::nullopt;
            }
        } else if (arg == QLatin1String("--date")) {
            const auto rule = DateRuleArgument::parse(value, error);
            if (!rule) {
                *error = QStringLiteral("--date: %1").arg(*error);
                return std::nullopt;
            }
            rules.rule(rule->field) = rule->rule;
            rules.slot(rule->field) = rule->slot;
            rules.alive(rule->field) = true;
        } else {
            *error = QStringLiteral("presets save takes --set and --date, not '%1'").arg(arg);
            return std::nullopt;
        }
        any = true;
    }
    if (!any) {
        *error = QStringLiteral("give the preset's values with --set and --date");
        return std::nullopt;
    }
    return ActualPreset{std::nullopt, QString(), values, rules, std::nullopt};
}

int savePreset(QStringList args) {
    if (args.isEmpty() || args.first().startsWith(QLatin1Char('-')))
        return usageError(QStringLiteral("presets save NAME OPTIONS..."));
    const QString name = args.takeFirst();
    const bool replace = args.removeAll(QStringLiteral("--replace")) > 0;
    QString error;
    const auto made = presetFromOptions(args, &error);
    if (!made)
        return usageError(error);
    UserPresets presets;
    PresetStore& store = presets.store;
    qsizetype position = presets.find(name);
    if (position >= 0 && !replace)
        return usageError(QStringLiteral("a preset named '%1' exists; give --replace to change "
                                         "its values")
                              .arg(store.presets().at(position).name.value_or(name)));
    if (position < 0) {
        switch (store.checkName(name)) {
        case PresetStore::NameCheck::Empty:
            return usageError(QStringLiteral("a preset needs a name"));
        case PresetStore::NameCheck::Unfit:
            return usageError(QStringLiteral("the name is refused: %1")
                                  .arg(presetNameRefusal(name).value_or(QString())));
        case PresetStore::NameCheck::Ok:
        case PresetStore::NameCheck::Taken:
            break;
        }
        position = store.addPreset(name);
    }
    store.replaceValues(position, *made->properties, *made->timeSetting);
    return saved(presets, QStringLiteral("saved preset '%1'").arg(name));
}

int showPreset(const QStringList& args, bool toFile) {
    if (args.size() != (toFile ? 2 : 1))
        return usageError(toFile ? QStringLiteral("presets export NAME FILE")
                                 : QStringLiteral("presets show NAME"));
    UserPresets presets;
    const qsizetype position = presets.find(args[0]);
    if (position < 0)
        return unknownName(args[0]);
    QString error;
    const QByteArray json = encodePresetJson(presets.store.presets().at(position), &error);
    if (json.isEmpty()) {
        QTextStream(stderr) << "tagmoor-cli presets: " << error << '\n';
        return 1;
    }
    if (!toFile) {
        QTextStream(stdout) << QString::fromUtf8(json);
        return 0;
    }
    QSaveFile file(args[1]);
    if (!file.open(QIODevice::WriteOnly) || file.write(json) != json.size() || !file.commit()) {
        QTextStream(stderr) << "tagmoor-cli presets: cannot write " << args[1] << ": "
                            << file.errorString() << '\n';
        return 1;
    }
    return 0;
}

int importPreset(const QStringList& args) {
    if (args.size() != 1)
        return usageError(QStringLiteral("presets import FILE"));
    QString error;
    const auto preset = readPresetJsonFile(args[0], &error);
    if (!preset)
        return usageError(error);
    UserPresets presets;
    const QString name = preset->name.value_or(QString());
    if (presets.store.checkName(name) != PresetStore::NameCheck::Ok)
        return usageError(QStringLiteral("a preset named '%1' exists already; remove or rename "
                                         "it first")
                              .arg(name));
    presets.store.appendPreset(*preset);
    return saved(presets, QStringLiteral("imported preset '%1'").arg(name));
}

int removePreset(const QStringList& args) {
    if (args.size() != 1)
        return usageError(QStringLiteral("presets remove NAME"));
    UserPresets presets;
    const qsizetype position = presets.find(args[0]);
    if (position < 0)
        return unknownName(args[0]);
    const QString name = presets.store.presets().at(position).name.value_or(QString());
    presets.store.removePreset(position);
    return saved(presets, QStringLiteral("removed preset '%1'").arg(name));
}

} // namespace

bool applyStoredPreset(RunValues& values, const QString& name, QString* error) {
    UserPresets presets;
    const qsizetype position = presets.find(name);
    if (position < 0) {
        *error = QStringLiteral("--preset: no preset named '%1' (see 'tagmoor-cli presets list')")
                     .arg(name);
        return false;
    }
    ActualPreset preset = presets.store.presets().at(position);
    // The photo the preset names lends it its own XMP values.
    if (preset.properties && preset.properties->url && preset.properties->url->isLocalFile()) {
        QString why;
        const QString photo = preset.properties->url->toLocalFile();
        if (const auto facts = readPresetPhoto(photo, &why))
            applyPresetPhoto(*preset.properties, *facts);
        else
            QTextStream(stderr) << "tagmoor-cli: the photo of preset '" << name << "', " << photo
                                << ", is not read (" << why << "); its stored values stand\n";
    }
    PresetRunEdits edits = presetRunEdits(preset);
    // What the command line gave wins, field by field and date by date.
    for (const FormField& field : formFields()) {
        if (!values.fieldEditedFlags.test(field.field))
            continue;
        *field.keyRow().field(edits.editedProperties) =
            *field.keyRow().field(values.editedProperties);
        edits.fieldEditedFlags.set(field.field);
    }
    for (DateField field : allDateFields) {
        if (!values.editorDates.alive(field))
            continue;
        edits.editorDates.rule(field) = values.editorDates.rule(field);
        edits.editorDates.slot(field) = values.editorDates.slot(field);
        edits.editorDates.alive(field) = true;
    }
    values.editedProperties = std::move(edits.editedProperties);
    values.fieldEditedFlags = edits.fieldEditedFlags;
    values.editorDates = edits.editorDates;
    if (preset.extras)
        values.extras = extrasOverPreset(*preset.extras, values.extras);
    return true;
}

int runPresets(const QStringList& args) {
    QStringList rest = args;
    const QString command = rest.isEmpty() ? QString() : rest.takeFirst();
    if (command == QLatin1String("--help") || command == QLatin1String("-h")) {
        QTextStream(stdout) << kPresetsUsage;
        return 0;
    }
    if (command == QLatin1String("list")) {
        if (!rest.isEmpty())
            return usageError(QStringLiteral("presets list takes no arguments"));
        UserPresets presets;
        QTextStream out(stdout);
        for (const ActualPreset& preset : presets.store.presets())
            out << preset.name.value_or(QString()) << '\n';
        return 0;
    }
    if (command == QLatin1String("show"))
        return showPreset(rest, false);
    if (command == QLatin1String("export"))
        return showPreset(rest, true);
    if (command == QLatin1String("save"))
        return savePreset(rest);
    if (command == QLatin1String("import"))
        return importPreset(rest);
    if (command == QLatin1String("remove"))
        return removePreset(rest);
    return usageError(command.isEmpty() ? QStringLiteral("no presets command")
                                        : QStringLiteral("unknown command '%1'").arg(command));
}

} // namespace tagmoor::cli
