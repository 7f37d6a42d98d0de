#pragma once

#include "model/Field.h"

#include <QString>

#include <algorithm>
#include <span>

namespace tagmoor {

// The three families of the form, each a box of its own; one is visible at a time.
enum class Editor { exif, iptc, xmp };

// The family of an editor tab's id, the tabs being in the order of Editor; an id before the
// first is the first, one past the last the last.
inline Editor editorOfTab(int id) {
    return Editor(std::clamp(id, 0, 2));
}

// One row of the form as it is laid out: its field and its label.
struct FormLine {
    Field field;
    const char* label;
};

// One titled section of a family's box, with its rows in the order shown.
struct FormSection {
    Editor editor;
    const char* titleControl; // "lblGeneral"
    const char* title;        // "General"
    std::span<const FormLine> lines;
};

// Every section of the form, family by family, in the order shown. Together they hold each
// of the 75 fields once.
std::span<const FormSection> formSections();

// The title control and text of a family's box ("lblExifEditor", "EXIF Editor").
const char* editorTitleControl(Editor editor);
const char* editorTitle(Editor editor);

// The label of a field ("Artist"), as the form shows it.
QString labelOf(Field field);

} // namespace tagmoor
