#include "metadata/SidecarOptions.h"

namespace tagmoor {

const QStringList& sidecarWriteNames() {
    static const QStringList names{"never", "fallback", "always", "both"};
    return names;
}

const QStringList& sidecarStripNames() {
    static const QStringList names{"keep", "strip", "remove"};
    return names;
}

const QStringList& sidecarNamingNames() {
    static const QStringList names{"ext", "base"};
    return names;
}

std::optional<int> sidecarChoice(const QString& word, const QStringList& names) {
    const qsizetype at = names.indexOf(word.toLower());
    return at < 0 ? std::nullopt : std::optional<int>(int(at));
}

} // namespace tagmoor
