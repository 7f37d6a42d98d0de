#pragma once

#include "metadata/MetadataFieldSet.h"
#include "metadata/WrittenProperties.h"

#include <QString>

namespace tagmoor {

// Lays the edited values over what the file at `path` holds now and gives the values for
// MetadataTest::setImagePropertiesAll. An edited row takes its edit, another row the file's
// value; the rows that nothing reads stay without a value.
WrittenProperties mergeForWriting(const MetadataFieldSet& editedFields, const QString& path);

// The same over the values `inFile` that the file holds.
WrittenProperties mergeForWriting(const MetadataFieldSet& editedFields,
                                  const MetadataFieldSet& inFile);

} // namespace tagmoor
