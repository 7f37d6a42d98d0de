#include "workingset/FileSizeText.h"

namespace tagmoor {

QString fileSizeText(std::uint64_t n) {
    if (n <= 999)
        return QStringLiteral("%1 bytes").arg(n);
    const float k = float(n / 1000);
    if (n <= 999999)
        return QString::asprintf("%.1f KB", double(k));
    const float m = k / 1000.0f;
    if (m < 1000.0f)
        return QString::asprintf("%.1f MB", double(m));
    return QString::asprintf("%.1f GB", double(m / 1000.0f));
}

} // namespace tagmoor
