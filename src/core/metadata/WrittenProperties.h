#pragma once

#include "metadata/MetadataFieldSet.h"

#include <QString>

#include <utility>

namespace tagmoor {

// The values one write lays into a file: a value per row of the key lists, as
// mergeForWriting makes them of the edits and the file's own values. A row without a value is
// not part of the write. The standard form leaves its tag alone; the described form still
// writes a zero into an integer, rational or GPS row. Key texts are made of the rows only at
// the Exiv2 call.
class WrittenProperties {
public:
    WrittenProperties() = default;
    explicit WrittenProperties(MetadataFieldSet values) : m_values(std::move(values)) {}

    const PropertyValue& at(const KeyRow& row) const { return m_values.at(row); }
    bool has(const KeyRow& row) const { return at(row).isPresent(); }
    void set(const KeyRow& row, PropertyValue value) { m_values.at(row) = std::move(value); }

    // Whether no row of the block has a value.
    bool isEmpty(KeyBlock block) const;

    const MetadataFieldSet& values() const { return m_values; }

    bool operator==(const WrittenProperties&) const = default;

private:
    MetadataFieldSet m_values;
};

// A row's value in the form that the writers hand to Exiv2. Each reads the value as its kind
// allows (a number as its shortest decimal text, a text as the number it spells); an absent
// value, or one of a kind without such a reading, gives the empty text or zero.
QString writtenText(const PropertyValue& value);
qint64 writtenInteger(const PropertyValue& value);
float writtenFloat(const PropertyValue& value);
double writtenDouble(const PropertyValue& value);

} // namespace tagmoor
