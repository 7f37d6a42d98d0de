#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace tagmoor {

// The accepted extensions, lower case, in their fixed order; the last one is the photo library
// package. The classic list has 39; today's adds HEIC/HEIF, AVIF, JPEG XL, WebP, CR3 and RW2.
// Which one holds is the process's choice (setOnlyClassicExtensions), by default the classic
// list in the described form and today's in the standard form.
const QStringList& supportedExtensions();
const QStringList& classicExtensions();
const QStringList& todaysExtensions();

// Whether the accepted list is the classic one now.
bool onlyClassicExtensions();
// Chooses the list for the whole process; nothing goes back to following the form. Set once
// before any scan, as the form is.
void setOnlyClassicExtensions(std::optional<bool> only);

// The same list without its last entry: the filter of the add screen's open panel.
const QStringList& panelExtensions();

// Whether the lowercased extension of `path` is one of supportedExtensions() (exact match).
bool hasSupportedExtension(const QString& path);

// The extension of a photo library package, compared exactly (no lowercasing).
inline constexpr char16_t photoLibraryExtension[] = u"photoslibrary";

// Whether the path's extension is exactly "photoslibrary".
bool isPhotoLibraryPackage(const QString& path);

} // namespace tagmoor
