#pragma once

#include <QString>

namespace tagmoor {

// The float value of a typed text, read as far as it is a number: "48.85" and " 48.85 N" give
// 48.85, "91" gives 91 (no range check), and a text that does not begin with a number
// (empty included) gives 0.
float floatValueOfText(const QString& text);

// A coordinate as the location fields show it: the shortest decimals that give the same
// 32-bit float back ("48.8584", "91", "0"), never in exponent form.
QString coordinateText(float degrees);

} // namespace tagmoor
