#pragma once

#include "batch/RunValues.h"

namespace tagmoor {

// The mode popup and the five clean-metadata check boxes of the home screen, with their linked
// behaviour: EXIF stands for all of EXIF, GPS and the comment being parts of it, so ticking
// EXIF ticks both and giving up a part gives up the whole. The popup sets the boxes off but
// leaves the five values as they were: a box ticked before a change of row stays in force,
// unseen, until it is ticked and unticked again. That is kept as it is.
class ProcessingOptions {
public:
    // The popup's rows: edit and keep the rest, edit and clear the rest, remove groups.
    int row() const { return m_row; }
    void chooseRow(int row);
    ProcessingMode mode() const { return ProcessingMode(m_row); }
    bool isRemoveGroups() const { return m_row == 2; }

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
        chooseRow(0);
        overwriteExisting = false;
    }
    // Reset All: back to the first row, and the five values behind the boxes off as well.
    void clearChoices() {
        chooseRow(0);
        m_clean = CleanOptions{};
    }

private:
    int m_row = 0;
    CleanOptions m_clean;
    CleanOptions m_shown;
    bool m_startEnabled = true;
};

} // namespace tagmoor
