#pragma once

#include <mutex>

namespace tagmoor {

// Sets up Exiv2 once per process: the XMP parser and the routing of its log into the
// tagmoor.metadata logging category. Call from main() before any thread starts.
void initializeMetadataLibrary();

// libtiff, which Qt's TIFF reader uses, prints its warnings about damaged files straight to
// stderr. This routes them into the logging category tagmoor.metadata.libtiff instead, for a
// program whose stderr is read line by line (the command line). Call before any thread starts.
void routeTiffMessagesToLog();

// Exiv2's XMP toolkit is not safe to use from two threads at once, and Exiv2 only guards
// the registration of namespaces. Hold this lock around every Exiv2 call that parses or
// writes XMP: readMetadata, writeMetadata, and the XmpParser functions.
std::unique_lock<std::mutex> lockXmpToolkit();

} // namespace tagmoor
