#include "metadata/MetadataLibrary.h"

#include <QLoggingCategory>

#include <exiv2/exiv2.hpp>

#include <mutex>

Q_LOGGING_CATEGORY(lcExiv2, "tagmoor.metadata.exiv2", QtWarningMsg)

namespace tagmoor {

namespace {
void exiv2Log(int level, const char* message) {
    QByteArray text(message);
    while (text.endsWith('\n'))
        text.chop(1);
    if (level >= Exiv2::LogMsg::error)
        qCWarning(lcExiv2).noquote() << text;
    else
        qCDebug(lcExiv2).noquote() << text;
}
} // namespace

void initializeMetadataLibrary() {
    static std::once_flag once;
    std::call_once(once, [] {
        Exiv2::XmpParser::initialize();
        Exiv2::LogMsg::setHandler(exiv2Log);
        Exiv2::LogMsg::setLevel(Exiv2::LogMsg::warn);
    });
}

} // namespace tagmoor
