#pragma once

#include <QString>
#include <QStringList>

namespace tagmoor {

// The 39 accepted extensions, lower case, in their fixed order. The last one is the photo
// library package.
const QStringList& supportedExtensions();

// The same list without its last entry: the filter of the add screen's open panel.
const QStringList& panelExtensions();

// Whether the lowercased extension of `path` is one of supportedExtensions() (exact match).
bool hasSupportedExtension(const QString& path);

// The extension of a photo library package, compared exactly (no lowercasing).
inline constexpr char16_t photoLibraryExtension[] = u"photoslibrary";

// Whether the path's extension is exactly "photoslibrary".
bool isPhotoLibraryPackage(const QString& path);

} // namespace tagmoor
