#include "photolibrary/PhotoLibraryLog.h"

Q_LOGGING_CATEGORY(lcPhotoLibrary, "tagmoor.photolibrary")
