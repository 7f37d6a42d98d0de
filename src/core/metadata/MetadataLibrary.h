#pragma once

namespace tagmoor {

// Sets up Exiv2 once per process: the XMP parser and the routing of its log into the
// tagmoor.metadata logging category. Call from main() before any thread starts.
void initializeMetadataLibrary();

} // namespace tagmoor
