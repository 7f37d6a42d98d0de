#pragma once

#include "foundation/ValueForm.h"

namespace tagmoor {

// How the writer lays values into a file beyond what the dictionary says.
struct WriteOptions {
    // Write tags in their standard form: only the edited fields are written, each keeps the
    // type the file gave it (a new tag takes its standard type), a field without a value
    // writes nothing, Exif dates are "YYYY:MM:DD HH:MM:SS" and XMP dates ISO 8601. Off: every
    // field of the dictionary is rewritten in the program's own form. Follows the process's
    // form unless set.
    bool standardForm = isStandardForm();
    // IPTC text outside ASCII goes with the UTF-8 declaration (Iptc.Envelope.CharacterSet),
    // so that other programs do not read it as Latin-1.
    bool declareIptcCharset = true;

    bool operator==(const WriteOptions&) const = default;
};

} // namespace tagmoor
