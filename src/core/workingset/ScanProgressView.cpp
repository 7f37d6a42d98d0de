#include "workingset/ScanProgressView.h"

#include <QCoreApplication>
#include <QLocale>

#include <cmath>

namespace tagmoor {

ScanProgressView ScanProgressView::countingLook() {
    ScanProgressView v;
    v.boxLoaderVisible = true;
    v.addMoreEnabled = false;
    v.loaderVisible = false;
    v.loaderValue = 0.0;
    v.spinnerVisible = true;
    v.editorBusy = true;
    v.percentText = QStringLiteral("0%");
    v.pathText = QCoreApplication::translate("ScanProgress", "Path: Analysing objects...");
    v.imagesSelectedText = QStringLiteral("0 Images Selected");
    v.objectsSelectedText = QCoreApplication::translate("ScanProgress", "Objects Selected: 0 / 0");
    return v;
}

ScanProgressView ScanProgressView::percentageLook(const ScanProgressView& from) {
    ScanProgressView v = from;
    v.loaderVisible = true;
    v.spinnerVisible = false;
    return v;
}

ScanProgressView ScanProgressView::forItem(const ScanCounters& c) {
    ScanProgressView v = percentageLook(countingLook());
    // The total counts at least the item being shown; the guard only protects odd callers.
    const int percent =
        c.totalPhotos > 0
            ? int(std::lround(double(c.processedPhotos) / double(c.totalPhotos) * 100.0))
            : 0;
    v.percentText = QStringLiteral("%1%").arg(percent);
    v.loaderValue = percent / 100.0;
    v.pathText = QCoreApplication::translate("ScanProgress", "Path: ") + c.currentPath;
    v.imagesSelectedText = QCoreApplication::translate("ScanProgress", "%1 Images Selected")
                               .arg(QLocale().toString(c.imagesInList));
    v.objectsSelectedText =
        QCoreApplication::translate("ScanProgress", "Objects Selected: %1 / %2")
            .arg(QLocale().toString(c.processedPhotos), QLocale().toString(c.totalPhotos));
    return v;
}

ScanProgressView ScanProgressView::finished(const ScanProgressView& from) {
    ScanProgressView v = from;
    v.boxLoaderVisible = false;
    v.loaderValue = 1.0;
    v.spinnerVisible = false;
    v.editorBusy = false;
    v.addMoreEnabled = true;
    return v;
}

} // namespace tagmoor
