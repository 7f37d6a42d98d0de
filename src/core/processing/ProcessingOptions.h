#pragma once

#include "batch/RunValues.h"

#include <algorithm>

namespace tagmoor {

// The mode popup and the five clean-metadata check boxes of the home screen, with their linked
// behaviour: EXIF stands for all of EXIF, GPS and the comment being parts of it, so ticking
// EXIF ticks both and giving up a part gives up the whole. The popup sets the boxes off but
// leaves the five values as they were: a box ticked before a change of row stays in force,
// unseen, until it is ticked and unticked again. That is kept as it is.
class ProcessingOptions {
public:
    ProcessingMode mode() const { return m_mode; }
    void chooseMode(ProcessingMode mode);
    bool isRemoveGroups() const { return m_mode == ProcessingMode::removeGroups; }
    // The popup's rows are the modes in their order: edit and keep the rest, edit and clear
    // the rest, remove groups. A row past the last stands for the last.
    int row() const { return int(m_mode); }
    void chooseRow(int row) { chooseMode(ProcessingMode(std::clamp(row, 0, 2))); }

    enum class Box { Exif, Iptc, Xmp, Gps, Comment };
    void clickBox(Box box, bool on);
    // What each box shows (which is not always what the run reads: see above).
    bool shows(Box box) const;
    const CleanOptions& clean() const { return m_clean; }

    // Start Process is on when a box is on in the remove row, always in the other rows.
    bool startEnabled() const { return m_startEnabled; }

    // Raised for the coming run by the rename panel's "Overwrite" answer, beside the stored
    // preference.
    bool overwriteExisting = false;

    // Finish: back to the first row with every box off (the values stay, as a popup change),
    // and the one-run overwrite answer forgotten.
    void reset() {
        chooseMode(ProcessingMode::keepUnedited);
        overwriteExisting = false;
    }
    // Reset All: back to the first row, and the five values behind the boxes off as well.
    void clearChoices() {
        chooseMode(ProcessingMode::keepUnedited);
        m_clean = CleanOptions{};
    }

private:
    ProcessingMode m_mode = ProcessingMode::keepUnedited;
    CleanOptions m_clean;
    CleanOptions m_shown;
    bool m_startEnabled = true;
};

} // namespace tagmoor
