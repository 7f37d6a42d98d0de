#pragma once

#include <QString>

#include <span>
#include <vector>

namespace tagmoor {

// One row of the region list: the localized region name and its ISO 3166 code.
struct CountryRow {
    QString name;
    QString code;

    bool operator==(const CountryRow&) const = default;
};

// The region list of the IPTC country fields. It is not stored: it is built once, at first
// use, from ICU's list of ISO 3166 codes in the order of that list (code order, not name
// order), with names in the default ICU locale of that moment. Row 0 is "Leave Blank" with
// the code "NIL"; a code for which the locale has no name gets no row.
class CountryHelper {
public:
    // The table, built on the first call (thread-safe) and unchanged afterwards.
    static std::span<const CountryRow> Country();

    // The row of the first entry whose code equals `code`; 0 (the blank row) when none does.
    static int indexOfCountry(const QString& code);

    // Builds a fresh list with names in the given ICU locale ("en_US", "de_DE"...). The
    // shared table above is this for the default locale at first use.
    static std::vector<CountryRow> buildRows(const char* localeName);
};

} // namespace tagmoor
