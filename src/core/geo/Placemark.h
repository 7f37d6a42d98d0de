#pragma once

#include <QString>
#include <QStringList>

namespace tagmoor {

// One answer of the gazetteer: a populated place and what it lies in.
struct Placemark {
    // The quarter of a city the position falls in, when the data names one.
    QString subLocality;
    // The town or city.
    QString locality;
    // The first-level division's code as the data gives it (GeoNames admin1 code).
    QString administrativeAreaCode;
    // The country's name in the user's language, and its ISO 3166 code.
    QString country;
    QString isoCountryCode;
    double latitude = 0;
    double longitude = 0;
    quint32 population = 0;

    // Sub-locality, locality and country, those that exist, joined by ", ".
    QString composedName() const {
        QStringList parts;
        for (const QString& part : {subLocality, locality, country}) {
            if (!part.isEmpty())
                parts.append(part);
        }
        return parts.join(QStringLiteral(", "));
    }
};

} // namespace tagmoor
