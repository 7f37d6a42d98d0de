#include "model/CountryHelper.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace tagmoor {

namespace {

QString toQString(const icu::UnicodeString& text) {
    return QString(reinterpret_cast<const QChar*>(text.getBuffer()), text.length());
}

std::vector<CountryRow> buildFor(const icu::Locale& displayLocale) {
    std::vector<CountryRow> rows;
    rows.push_back({QStringLiteral("Leave Blank"), QStringLiteral("NIL")});
    for (const char* const* code = icu::Locale::getISOCountries(); *code != nullptr; ++code) {
        const icu::Locale region("", *code);
        icu::UnicodeString name;
        region.getDisplayCountry(displayLocale, name);
        // ICU answers with the code itself when the locale has no name for the region.
        const QString codeText = QString::fromLatin1(*code);
        const QString nameText = toQString(name);
        if (nameText.isEmpty() || nameText == codeText)
            continue;
        rows.push_back({nameText, codeText});
    }
    return rows;
}

} // namespace

std::vector<CountryRow> CountryHelper::buildRows(const char* localeName) {
    return buildFor(icu::Locale(localeName));
}

std::span<const CountryRow> CountryHelper::Country() {
    // A function-local static is built once, thread-safely, in the locale of first use.
    static const std::vector<CountryRow> table = buildFor(icu::Locale::getDefault());
    return table;
}

int CountryHelper::indexOfCountry(const QString& code) {
    const auto rows = Country();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].code == code)
            return int(i);
    }
    return 0;
}

} // namespace tagmoor
