#pragma once
// The process set-up both fuzz targets share: Exiv2 initialised as main() does, an
// application object for Qt's image plugins, quiet logs, and one scratch folder.

#include "metadata/MetadataLibrary.h"

#include <QCoreApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <memory>

namespace tagmoor::fuzz {

inline QString scratchDir() {
    static QTemporaryDir dir;
    return dir.path();
}

inline void setUpProcess(int* argc, char*** argv) {
    initializeMetadataLibrary();
    static QCoreApplication app(*argc, *argv);
    // Warnings about damaged files are the normal case here and would drown the fuzzer's own
    // output.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.info=false\n"
                                                    "*.warning=false\n*.critical=false"));
    scratchDir();
}

// Removes everything an input left in the scratch folder.
inline void clearScratch() {
    QDir dir(scratchDir());
    for (const QString& name : dir.entryList(QDir::Files | QDir::Hidden | QDir::System))
        dir.remove(name);
}

} // namespace tagmoor::fuzz
