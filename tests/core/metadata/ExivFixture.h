#pragma once
// Builds test photos whose tags are set straight through Exiv2, with exact value types.

#include "TestSupport.h"
#include "metadata/MetadataLibrary.h"

#include <exiv2/exiv2.hpp>

#include <functional>

namespace tagmoor::test {

// Adds one datum of the given type, parsed from Exiv2's text form ("48/1 30/1 0/1").
inline void addExif(Exiv2::ExifData& data, const char* key, Exiv2::TypeId type, const char* text) {
    Exiv2::Value::AutoPtr v = Exiv2::Value::create(type);
    v->read(text);
    data.add(Exiv2::ExifKey(key), v.get());
}

inline void addIptc(Exiv2::IptcData& data, const char* key, const char* text) {
    Exiv2::Value::AutoPtr v = Exiv2::Value::create(Exiv2::string);
    v->read(text);
    data.add(Exiv2::IptcKey(key), v.get());
}

// A small JPEG at `path` whose metadata `fill` sets.
inline QString jpegWithTags(const QString& path, const std::function<void(Exiv2::Image&)>& fill) {
    makeJpeg(path);
    // Exiv2 writes XMP through a toolkit that the program shares between threads.
    const auto xmpLock = lockXmpToolkit();
    Exiv2::Image::AutoPtr image = Exiv2::ImageFactory::open(QFile::encodeName(path).toStdString());
    image->readMetadata();
    fill(*image);
    image->writeMetadata();
    return path;
}

} // namespace tagmoor::test
