#include "batch/CaptureNames.h"

#include "batch/FileIdentity.h"
#include "dates/OriginalDate.h"
#include "rename/CaptureDateName.h"

#include <QFileInfo>

namespace tagmoor {

bool CaptureNames::applies(const Rename& rule) {
    return rule.is<CaptureDateName>();
}

QString CaptureNames::claim(const Rename& rule, const CGImageProperties& record,
                            const QString& sourcePath, const QString& folder,
                            const QString& baseName, const QString& extension) {
    std::optional<QDateTime> moment = OriginalDate::of(record).dateTimeOriginal;
    if (!moment || !moment->isValid())
        moment = QFileInfo(sourcePath).lastModified();
    const auto* capture = rule.as<CaptureDateName>();
    QString base = captureDateName(capture ? capture->captureDatePatternCD : QString(), *moment);
    if (base.isEmpty())
        return baseName;
    const auto source = fileIdOf(sourcePath);
    const auto pathOf = [&](const QString& name) {
        return folder + QLatin1Char('/') + name + QLatin1Char('.') + extension;
    };
    std::lock_guard lock(m_mutex);
    for (int n = 0;; ++n) {
        const QString name = n == 0 ? base : countedCaptureName(base, n);
        const QString path = pathOf(name);
        if (m_claimed.contains(path))
            continue;
        // The photo's own file under that name (a second run) is no collision.
        if (entryExists(path) && !(source && fileIdOf(path) == source))
            continue;
        m_claimed.insert(path);
        return name;
    }
}

} // namespace tagmoor
