#pragma once
// Loading's own door to the field set: the same reading as readMetadataFieldSet, for a
// caller that has already told the file's kind and wants the picture's header size too.

#include "metadata/MetadataBlockReader.h"
#include "metadata/MetadataFieldSet.h"

namespace tagmoor {

MetadataFieldSet readMetadataFieldSet(const QString& path,
                                      const MetadataBlockReader::Options& options);

// The same values of an image that is open and read already (the writer's own copy of the
// bytes it edits). Throws what Exiv2 throws.
MetadataFieldSet readMetadataFieldSet(const Exiv2::Image& image);

// The date rows alone of the same reading.
MetadataFieldSet readMetadataDates(const Exiv2::Image& image);

} // namespace tagmoor
