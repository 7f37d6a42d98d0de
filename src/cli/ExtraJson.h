#pragma once

#include "extras/ExtraValues.h"

#include <string>

namespace tagmoor::cli {

// A photo's values beyond the form's fields as one compact JSON object, present values only:
// "keywords" (paths and plain keywords as shown), "keywordPaths", "rating", "label",
// "persons", the texts under their JSON names ("altText", "creatorEmail", ...) and
// "fromSidecar". The keys come in code-unit order and the bytes are those QJsonDocument writes
// for the same object. Appends nothing and gives false when the photo has none of them.
bool appendExtraValuesJson(std::string& out, const ExtraValues& values);

} // namespace tagmoor::cli
