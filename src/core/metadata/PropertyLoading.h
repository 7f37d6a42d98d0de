#pragma once

#include "metadata/MetadataFieldSet.h"
#include "model/CGImageProperties.h"

#include <QDateTime>
#include <QString>
#include <QUrl>

#include <optional>

namespace tagmoor {

// A file's record: nothing when the file is not a readable image of an accepted type.
// Reads headers only. Safe to call from any thread.
std::optional<CGImageProperties> loadImageProperties(const QUrl& url);

// Whether loadImageProperties gives the file a record, with as little work as tells it: a JPEG
// whose frame header Qt's reader finds needs no parse of its tags.
bool givesRecord(const QString& path);

// The key-list values of a file, cast to their row kinds; all absent when the bridge failed.
MetadataFieldSet readMetadataFieldSet(const QString& path);

// The first of the 13 metadata date patterns that parses the whole text, in the current
// locale and time zone.
std::optional<QDateTime> parseMetadataDate(const QString& text);

} // namespace tagmoor
