#include "metadata/PropertyLoading.h"

#include <QFileInfo>

namespace tagmoor {

// Placeholder until the readers are joined: an empty record for any existing file.
std::optional<CGImageProperties> loadImageProperties(const QUrl& url) {
    if (!QFileInfo(url.toLocalFile()).isFile())
        return std::nullopt;
    return makeEmptyRecord(url);
}

} // namespace tagmoor
