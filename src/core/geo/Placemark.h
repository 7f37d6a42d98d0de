#pragma once

#include <QString>
#include <QStringList>

#include <initializer_list>

namespace tagmoor {

// One answer of the gazetteer: a populated place and what it lies in.
struct Placemark {
    // The quarter of a city the position falls in, when the data names one.
    QString subLocality;
    // The town or city.
    QString locality;
    // The first-level division (state, province, region) and its code as the data gives it
    // (GeoNames admin1: "Île-de-France", "11").
    QString administrativeArea;
    QString administrativeAreaCode;
    // The country's name in the user's language, and its ISO 3166 code.
    QString country;
    QString isoCountryCode;
    double latitude = 0;
    double longitude = 0;
    quint32 population = 0;

    // Sub-locality, locality and country, those that exist, joined by ", ".
    QString composedName() const { return joined({subLocality, locality, country}); }

    // The same with the region before the country: "Paris, Île-de-France, France". A region
    // named as its place ("Tokyo, Tokyo") is said once.
    QString composedNameWithRegion() const {
        return joined({subLocality, locality,
                       administrativeArea == locality ? QString() : administrativeArea, country});
    }

    // The region and the country: "Île-de-France, France".
    QString composedRegion() const { return joined({administrativeArea, country}); }

private:
    static QString joined(std::initializer_list<QString> parts) {
        QStringList present;
        for (const QString& part : parts) {
            if (!part.isEmpty())
                present.append(part);
        }
        return present.join(QStringLiteral(", "));
    }
};

} // namespace tagmoor
