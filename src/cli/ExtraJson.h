#pragma once

#include "extras/ExtraValues.h"

#include <QJsonObject>

namespace tagmoor::cli {

// A photo's values beyond the form's fields as JSON, present values only: "keywords" (paths
// and plain keywords as shown), "keywordPaths", "rating", "label", "persons" and the texts
// under their JSON names ("altText", "creatorEmail", ...).
QJsonObject extraValuesJson(const ExtraValues& values);

} // namespace tagmoor::cli
