#include "presets/PresetCheck.h"

namespace tagmoor {

std::optional<QString> presetRefusal(const ActualPreset& preset) {
    // A stored name is text: a name holding a character that no text may (a lone half of a
    // surrogate pair) cannot be shown or typed.
    if (preset.name) {
        for (qsizetype i = 0; i < preset.name->size(); ++i) {
            const QChar c = preset.name->at(i);
            if (c.isHighSurrogate() && i + 1 < preset.name->size() &&
                preset.name->at(i + 1).isLowSurrogate()) {
                ++i;
                continue;
            }
            if (c.isSurrogate())
                return QStringLiteral("its name is not valid text");
        }
    }
    return std::nullopt;
}

} // namespace tagmoor
