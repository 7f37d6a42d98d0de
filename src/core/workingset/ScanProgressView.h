#pragma once

#include "workingset/ScanTypes.h"

#include <QString>

namespace tagmoor {

// Everything the progress box shows, as data: the screen copies these into its controls.
struct ScanProgressView {
    bool boxLoaderVisible = false;
    bool addMoreEnabled = true;
    bool loaderVisible = false;
    double loaderValue = 0.0; // 0..1
    bool spinnerVisible = false;
    bool editorBusy = false;
    QString percentText;         // lblPercentageLoader
    QString pathText;            // lblPathScanning
    QString imagesSelectedText;  // lblImagesSelectedScanning
    QString objectsSelectedText; // lblObjectSelectedScanning
    bool operator==(const ScanProgressView&) const = default;

    // The look while the files are being counted.
    static ScanProgressView countingLook();
    // The percentage look before the first item is added.
    static ScanProgressView percentageLook(const ScanProgressView& from);
    // The percentage look for the given counters.
    static ScanProgressView forItem(const ScanCounters& counters);
    // After the scan: box hidden, loader full, add button on again.
    static ScanProgressView finished(const ScanProgressView& from);
};

} // namespace tagmoor
