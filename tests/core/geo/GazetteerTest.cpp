#include "geo/Gazetteer.h"
#include "geo/GeoData.h"
#include "geo/Geocoder.h"
#include "geo/MapProjection.h"

#include "workingset/WaitFor.h"

#include <gtest/gtest.h>

#include <QDataStream>

#include <cmath>

using namespace tagmoor;

namespace {

const Gazetteer& gazetteer() {
    static const std::shared_ptr<const Gazetteer> shared =
        Gazetteer::fromFile(GeoData::locate(QStringLiteral("places.bin")));
    return *shared;
}

struct Written {
    double latitude, longitude;
    const char* country;
    quint8 kind;
    const char* name;
};

// The uncompressed contents of a places.bin with one region and the given places.
QByteArray placesFile(std::initializer_list<Written> places) {
    QByteArray data;
    QDataStream out(&data, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    auto text = [&out](const char* utf8) {
        const QByteArray bytes(utf8);
        out << quint16(bytes.size());
        out.writeRawData(bytes.constData(), int(bytes.size()));
    };
    out.writeRawData("TMPL", 4);
    out << quint32(2) << quint32(1);
    out.writeRawData("DE", 2);
    text("01");
    text("Nord");
    out << quint32(places.size());
    for (const Written& place : places) {
        out << qint32(std::lround(place.latitude * 1e5))
            << qint32(std::lround(place.longitude * 1e5)) << quint32(5000);
        out.writeRawData(place.country, 2);
        out << place.kind << quint16(0);
        text(place.name);
    }
    return data;
}

struct Known {
    const char* what;
    double latitude, longitude;
    const char* locality;
    const char* region;
    const char* country;
};

} // namespace

TEST(Gazetteer, LoadsTheInstalledPlaces) {
    EXPECT_GT(gazetteer().size(), 130000);
    EXPECT_EQ(Gazetteer::fromData(QByteArray("TMPL\2\0\0\0\5\0\0\0", 12)), nullptr)
        << "a cut file is refused";
    EXPECT_EQ(Gazetteer::fromData(QByteArray("TMPL\1\0\0\0\0\0\0\0", 12)), nullptr)
        << "an older format";
    EXPECT_EQ(Gazetteer::fromData("not a gazetteer"), nullptr);
}

TEST(Gazetteer, NamesKeepTheirPlacesWhateverTheirLettersAndFolding) {
    // A letter outside the basic plane takes two UTF-16 units and four bytes of UTF-8; "ß"
    // folds to two letters; the quarter's name differs from its folded form in length too.
    const auto written = Gazetteer::fromData(placesFile({
        {10.0, 10.0, "DE", 0, "𐐀ber"}, // U+10400, which folds to U+10428
        {10.001, 10.001, "DE", 1, "Ärm / Viertel"},
        {11.0, 10.0, "DE", 0, "Straße"},
        {12.0, 10.0, "AT", 0, ""},
        {13.0, 10.0, "DE", 0, "Straßenau"},
    }));
    ASSERT_TRUE(written);
    ASSERT_EQ(written->size(), 5);

    const auto first = written->reverse(10.0, 10.0);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->locality, QString::fromUtf8("𐐀ber"));
    EXPECT_EQ(first->subLocality, QStringLiteral("Viertel"));
    EXPECT_EQ(first->administrativeArea, QStringLiteral("Nord"));
    EXPECT_EQ(first->country, QStringLiteral("Germany"));
    EXPECT_EQ(written->reverse(11.0, 10.0)->locality, QString::fromUtf8("Straße"));
    EXPECT_EQ(written->reverse(12.0, 10.0)->locality, QString());
    EXPECT_EQ(written->reverse(12.0, 10.0)->country, QStringLiteral("Austria"));

    auto localities = [&](const char* typed) {
        QStringList names;
        for (const Placemark& mark : written->forward(QString::fromUtf8(typed)))
            names.append(mark.locality);
        return names;
    };
    EXPECT_EQ(localities("𐐨BER"), QStringList{QString::fromUtf8("𐐀ber")});
    EXPECT_EQ(localities("STRASSE"),
              (QStringList{QString::fromUtf8("Straße"), QString::fromUtf8("Straßenau")}))
        << "the exact name first, then the one it begins";
    EXPECT_EQ(localities("strassen"), QStringList{QString::fromUtf8("Straßenau")});
    EXPECT_EQ(localities("arm / v"), QStringList{QString::fromUtf8("Ärm / Viertel")});
    EXPECT_EQ(localities("strasse, austria"), QStringList{});

    // A count of places the rest of the file cannot hold is a cut file.
    QByteArray cut = placesFile({{10.0, 10.0, "DE", 0, "Ort"}});
    cut.chop(4);
    EXPECT_EQ(Gazetteer::fromData(cut), nullptr);
}

TEST(Gazetteer, ReverseGivesTheCityAPositionBelongsTo) {
    // Positions of landmarks; several lie closer to a suburb's centre than to their city's.
    const Known known[] = {
        {"Eiffel Tower", 48.8584, 2.2945, "Paris", "Île-de-France", "France"},
        {"Colosseum", 41.8902, 12.4922, "Rome", "Lazio", "Italy"},
        {"Big Ben", 51.5007, -0.1246, "London", "England", "United Kingdom"},
        {"Statue of Liberty", 40.6892, -74.0445, "New York City", "New York", "United States"},
        {"Opera House", -33.8568, 151.2153, "Sydney", "New South Wales", "Australia"},
        {"Christ the Redeemer", -22.9519, -43.2105, "Rio de Janeiro", "Rio de Janeiro", "Brazil"},
        {"Tokyo Tower", 35.6586, 139.7454, "Tokyo", "Tokyo", "Japan"},
        {"Golden Gate Bridge", 37.8199, -122.4783, "San Francisco", "California", "United States"},
        {"Zurich main station", 47.3779, 8.5403, "Zürich", "Zurich", "Switzerland"},
        {"Table Mountain", -33.9628, 18.4098, "Cape Town", "Western Cape", "South Africa"},
    };
    for (const Known& k : known) {
        const auto mark = gazetteer().reverse(k.latitude, k.longitude);
        ASSERT_TRUE(mark) << k.what;
        EXPECT_EQ(mark->locality, QString::fromUtf8(k.locality)) << k.what;
        EXPECT_EQ(mark->administrativeArea, QString::fromUtf8(k.region)) << k.what;
        EXPECT_EQ(mark->country, QString::fromUtf8(k.country)) << k.what;
    }

    const auto paris = gazetteer().reverse(48.8584, 2.2945);
    EXPECT_EQ(paris->composedName(), QStringLiteral("Paris, France"));
    EXPECT_EQ(paris->composedNameWithRegion(), QStringLiteral("Paris, Île-de-France, France"));
    EXPECT_EQ(paris->administrativeAreaCode, QStringLiteral("11"));
    EXPECT_EQ(paris->isoCountryCode, QStringLiteral("FR"));
    // A region named as its city is said once.
    EXPECT_EQ(gazetteer().reverse(35.6586, 139.7454)->composedNameWithRegion(),
              QStringLiteral("Tokyo, Japan"));
    // A quarter of the city, when one is near, leads the name.
    const auto zurich = gazetteer().reverse(47.3779, 8.5403);
    EXPECT_FALSE(zurich->subLocality.isEmpty());
    EXPECT_TRUE(zurich->composedName().endsWith(QStringLiteral(", Zürich, Switzerland")))
        << zurich->composedName().toStdString();

    // Open sea has no place; positions off the globe have none either.
    EXPECT_FALSE(gazetteer().reverse(-40.0, -130.0));
    EXPECT_FALSE(gazetteer().reverse(NAN, 0));
    // Across the date line the nearest place is found on the other side.
    const auto fiji = gazetteer().reverse(-16.0, 179.999);
    ASSERT_TRUE(fiji);
    EXPECT_EQ(fiji->isoCountryCode, QStringLiteral("FJ"));
}

TEST(Gazetteer, ForwardFindsNamesWhateverTheirAccentsAndCase) {
    for (const char* typed : {"Zürich", "zurich", "ZÜRICH", "  Zurich "}) {
        const auto marks = gazetteer().forward(QString::fromUtf8(typed));
        ASSERT_FALSE(marks.isEmpty()) << typed;
        EXPECT_EQ(marks.first().locality, QStringLiteral("Zürich")) << typed;
        EXPECT_EQ(marks.first().isoCountryCode, QStringLiteral("CH")) << typed;
        EXPECT_NEAR(marks.first().latitude, 47.37, 0.05);
    }
    for (const char* typed : {"São Paulo", "sao paulo", "SAO PAULO"}) {
        const auto marks = gazetteer().forward(QString::fromUtf8(typed));
        ASSERT_FALSE(marks.isEmpty()) << typed;
        EXPECT_EQ(marks.first().locality, QStringLiteral("São Paulo")) << typed;
        EXPECT_EQ(marks.first().isoCountryCode, QStringLiteral("BR"));
    }
    // The best match first: of the many places named Paris the capital, unless a country is
    // named; a beginning of a name finds the name.
    EXPECT_EQ(gazetteer().forward(QStringLiteral("Paris")).first().isoCountryCode,
              QStringLiteral("FR"));
    EXPECT_EQ(gazetteer().forward(QStringLiteral("paris, canada")).first().isoCountryCode,
              QStringLiteral("CA"));
    EXPECT_EQ(gazetteer().forward(QStringLiteral("Paris, US")).first().isoCountryCode,
              QStringLiteral("US"));
    EXPECT_EQ(gazetteer().forward(QStringLiteral("Reykjav")).first().locality,
              QStringLiteral("Reykjavík"));
    EXPECT_LE(gazetteer().forward(QStringLiteral("San"), 5).size(), 5);

    // A region narrows as a country does, alone, in part or before the country; so a name as
    // the location view shows it finds its place again.
    const auto texas = gazetteer().forward(QStringLiteral("Paris, Texas"));
    ASSERT_FALSE(texas.isEmpty());
    EXPECT_EQ(texas.first().administrativeArea, QStringLiteral("Texas"));
    EXPECT_EQ(gazetteer()
                  .forward(QStringLiteral("Springfield, Illinois, United States"))
                  .first()
                  .administrativeAreaCode,
              QStringLiteral("IL"));
    const auto again = gazetteer().forward(QStringLiteral("Paris, Île-de-France, France"));
    ASSERT_FALSE(again.isEmpty());
    EXPECT_EQ(again.first().isoCountryCode, QStringLiteral("FR"));
    EXPECT_TRUE(gazetteer().forward(QStringLiteral("Paris, Texas, France")).isEmpty());

    EXPECT_TRUE(gazetteer().forward(QStringLiteral("Qxzqxz")).isEmpty());
    EXPECT_TRUE(gazetteer().forward(QString()).isEmpty());
    EXPECT_TRUE(gazetteer().forward(QStringLiteral("Paris, Atlantis")).isEmpty());
}

TEST(Geocoder, AnswersLaterAndInTheOrderOfTheQuestions) {
    Geocoder geocoder(Gazetteer::fromFile(GeoData::locate(QStringLiteral("places.bin"))));
    QStringList answers;
    geocoder.reverseGeocodeLocation(41.8902, 12.4922, [&](const auto& mark, const QString&) {
        answers.append(mark->locality);
    });
    geocoder.geocodeAddressString(QStringLiteral("Zürich"), [&](const auto& marks, const QString&) {
        answers.append(marks.first().locality);
    });
    geocoder.reverseGeocodeLocation(-40, -130, [&](const auto& mark, const QString& error) {
        answers.append(mark ? mark->locality : error);
    });
    EXPECT_TRUE(answers.isEmpty()) << "no answer inside the call";
    ASSERT_TRUE(test::waitFor([&] { return answers.size() == 3; }));
    EXPECT_EQ(answers, (QStringList{"Rome", "Zürich", "Placemark was nil"}));

    // Without the data every question is answered, with the reason.
    Geocoder without(std::shared_ptr<const Gazetteer>{});
    QString error;
    without.reverseGeocodeLocation(48.8584, 2.2945,
                                   [&](const auto&, const QString& e) { error = e; });
    ASSERT_TRUE(test::waitFor([&] { return !error.isEmpty(); }));
    EXPECT_EQ(error, QStringLiteral("The place names are not installed"));
}

TEST(MapProjection, FitsARegionOfOneDegreeToTheView) {
    const MapRegion region{48.8584, 2.2945, 1.0, 1.0};
    const QSizeF view(600, 400);
    const int zoom = MapProjection::zoomThatFits(region, view);
    // One degree fits, two at the next zoom would not.
    EXPECT_EQ(zoom, 8);
    const MapRegion fitted = MapProjection::regionThatFits(region, view);
    EXPECT_TRUE(fitted.isValid());
    EXPECT_DOUBLE_EQ(fitted.latitude, region.latitude);
    EXPECT_GE(fitted.longitudeSpan, 1.0);
    EXPECT_GE(fitted.latitudeSpan, 1.0);

    // Invalid numbers give an invalid region, so the caller keeps its own.
    EXPECT_FALSE(MapProjection::regionThatFits({NAN, 0, 1, 1}, view).isValid());
    // A latitude past the pole is drawn at the edge of the projection, not lost.
    const QPointF edge = MapProjection::toWorld(91, 0, 2);
    EXPECT_TRUE(std::isfinite(edge.y()));
    EXPECT_NEAR(edge.y(), 0, 1e-6);

    const QPointF world = MapProjection::toWorld(-33.9, 151.2, 10);
    const QPointF back = MapProjection::toLatLon(world, 10);
    EXPECT_NEAR(back.x(), 151.2, 1e-9);
    EXPECT_NEAR(back.y(), -33.9, 1e-9);
    EXPECT_NEAR(MapProjection::toLatLon(world + QPointF(256 << 10, 0), 10).x(), 151.2, 1e-9)
        << "longitudes wrap";
}
