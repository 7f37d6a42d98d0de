#pragma once

#include "rename/Rename.h"

#include <QString>

#include <optional>

namespace tagmoor {

class UserPrompt;

// The rename panel without its widgets. It edits the application's rename rule live, with
// five exclusive options, and keeps the rule as it stood at the opening so that Close can
// bring it back. `baseName` and `extension` are those of the first photo of the list, for the
// examples.
class RenamePanel {
public:
    enum class Option { keep, add, replace, format, capture };

    explicit RenamePanel(Rename& live) : m_live(live) {}

    // viewWillAppear: shows the rule as it stands, once per opening.
    void open(const QString& baseName, const QString& extension);
    bool isOpened() const { return m_isOpened; }
    const Rename& rule() const { return m_live; }

    void clickOption(Option option);
    Option option() const;
    void setAddText(const QString& text);
    void setAddPosition(int row);
    void setFindText(const QString& text);
    void setReplaceWith(const QString& text);
    void setNameFormatRow(int row);
    int nameFormatRow() const;
    void setWhereRow(int row);
    void setCustomFormat(const QString& text);
    // The start number's field; an empty field jumps back to 1. Gives the field's new text.
    QString setStartNumberText(const QString& text);
    void setMinDigitsRow(int row);
    // The date pattern of the capture-date option (empty: the default pattern).
    void setCapturePattern(const QString& text);

    // Which controls of the format option take input: (format, min digits, start number).
    struct FormatEnabled {
        bool format = false;
        bool minDigits = false;
        bool startNumber = false;
    };
    FormatEnabled formatEnabled() const;

    // "Example: Trip-IMG_0001.jpg", or "Example:" for an option that is off.
    QString example(Option option) const;

    // Save: checks the input and asks about overwriting, unless the run already overwrites
    // (`overwriteExisting`) or the stored preference does (`overwriteStored`). The answer
    // "Overwrite" raises `overwriteExisting` for the coming run. False while the panel stays
    // open.
    bool clickNext(UserPrompt& prompt, bool& overwriteExisting, bool overwriteStored);
    bool clickNext(UserPrompt& prompt, bool& overwriteExisting) {
        return clickNext(prompt, overwriteExisting, false);
    }
    // Close: the rule as it was at the opening.
    void clickClose();

private:
    Rename& m_live;
    Rename m_temp;
    bool m_isOpened = false;
    QString m_base;
    QString m_extension;
};

} // namespace tagmoor
