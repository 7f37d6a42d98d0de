#pragma once
// Loading's own door to the field set: the same reading as readMetadataFieldSet, for a
// caller that has already told the file's kind and wants the picture's header size too.

#include "metadata/MetadataBlockReader.h"
#include "metadata/MetadataFieldSet.h"

namespace tagmoor {

MetadataFieldSet readMetadataFieldSet(const QString& path,
                                      const MetadataBlockReader::Options& options);

} // namespace tagmoor
