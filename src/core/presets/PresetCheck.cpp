#include "presets/PresetCheck.h"

#include "editor/FieldValueCheck.h"
#include "model/FormFieldTable.h"
#include "presets/PresetForm.h"

#include <QCoreApplication>

namespace tagmoor {

std::optional<QString> presetNameRefusal(const QString& name) {
    if (!name.isValidUtf16())
        return QStringLiteral("its name is not valid text");
    for (const QChar c : name) {
        if (c.category() == QChar::Other_Control)
            return QStringLiteral("its name holds a control character (a line break, a tab or a "
                                  "NUL)");
    }
    if (name.startsWith(QLatin1String("--")))
        return QStringLiteral("its name begins with \"--\", which the command line takes for an "
                              "option");
    return std::nullopt;
}

QString unfitPresetNameText() {
    return QCoreApplication::translate("PresetCheck",
                                       "A preset name cannot hold a line break, a tab or another "
                                       "control character, nor begin with \"--\". Please enter "
                                       "another name.");
}

std::optional<QString> presetRefusal(const ActualPreset& preset) {
    if (preset.name) {
        if (auto refused = presetNameRefusal(*preset.name))
            return refused;
    }
    // Each value is of a kind its field holds, and what the preset edits when applied passes
    // the checks of the editor and the command line: what a run would refuse to write never
    // joins the list.
    if (preset.properties) {
        for (const FormField& field : formFields()) {
            if (auto refused = refusedValueKind(field, *preset.properties))
                return refused;
        }
    }
    const PresetRunEdits edits = presetRunEdits(preset);
    if (auto refused =
            refusedRunValue(edits.editedProperties, edits.fieldEditedFlags, edits.editorDates))
        return refused;
    if (preset.extras) {
        if (const QString refused = extraEditsRefusal(*preset.extras); !refused.isEmpty())
            return refused;
    }
    return std::nullopt;
}

} // namespace tagmoor
