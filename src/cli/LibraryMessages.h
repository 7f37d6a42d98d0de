#pragma once

#include <QStringList>

namespace tagmoor::cli {

// The image libraries warn about every odd entry of a damaged file: thousands of lines over a
// folder of such files, none of which says more than the one line with its reason that each
// photo gets anyway. They are shown only with --verbose, which may stand anywhere before
// "--". Takes --verbose out of the arguments and sets the logging rules to match; rules given
// in QT_LOGGING_RULES still take precedence.
void takeVerboseOption(QStringList& args);

} // namespace tagmoor::cli
