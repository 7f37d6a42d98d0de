#pragma once

#include "geo/Placemark.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringView>

#include <memory>
#include <optional>
#include <vector>

class QDataStream;

namespace tagmoor {

// The offline gazetteer: about 135,000 populated places (GeoNames, 1,000 people or more).
// Reverse geocoding finds the place a position belongs to; forward geocoding finds places by
// name, ignoring accents and case. Both answer from indexes (a k-d tree over points on the
// unit sphere, a sorted list of folded names), never by walking every place. Immutable once
// loaded, so one instance serves every thread.
class Gazetteer {
public:
    // Parses the uncompressed contents of places.bin; nothing when they are not such a file.
    static std::shared_ptr<const Gazetteer> fromData(const QByteArray& data);
    // Reads a places.bin file (zlib with its length in front).
    static std::shared_ptr<const Gazetteer> fromFile(const QString& path);

    int size() const { return int(m_places.size()); }

    // The place of a position: the town or city it most likely belongs to (a large city
    // reaches farther than a village beside it), with the quarter when one is close, and the
    // country. Nothing when no place lies within 300 km (open sea, ice).
    std::optional<Placemark> reverse(double latitude, double longitude) const;

    // Places whose name is `text` or starts with it, exact names first, larger places first
    // within each. Words after a comma narrow the answer: each names the place's country (by
    // name or ISO code) or its region, whole or its beginning ("Paris, Texas", "Paris, France",
    // "Springfield, Illinois, US").
    QList<Placemark> forward(const QString& text, int limit = 10) const;

    // The folding used for names: canonical decomposition, combining marks removed, full case
    // folding ("São Paulo" and "SAO PAULO" fold alike).
    static QString fold(QStringView text);

private:
    // The region index of a place outside every region.
    static constexpr quint16 kNoRegion = 0xFFFF;
    // A first-level division of a country (GeoNames admin1).
    struct Region {
        QString code;
        QString name; // empty when the data has a code without a name
        QString folded;
    };
    // 48 bytes, as 135,000 of them stay in memory: the name is a slice of m_text rather than
    // a string of its own, which would cost an allocation a place and a pointer more.
    struct Place {
        double x, y, z; // the position on the unit sphere
        float latitude, longitude;
        quint32 population;
        quint32 nameOffset; // into m_text
        quint16 nameLength; // no longer than its UTF-8 in the file, whose length is 16 bits
        quint16 region;     // index into m_regions, or kNoRegion
        char country[2];
        quint8 kind; // 0 place, 1 quarter of a place, 2 capital
    };
    static_assert(sizeof(Place) == 48);
    // A folded name, a slice of m_folded, and the index of the place it names.
    struct Name {
        quint32 offset;
        quint32 length;
        quint32 place;
    };
    struct Hit {
        int index;
        double chord;
    };

    Gazetteer() = default;
    // Reads `count` places after the regions, their names into m_text (`nameBytes` bounds
    // their length); false when the data ends early or names a region it lacks.
    bool readPlaces(QDataStream& in, quint32 count, qint64 nameBytes);
    // Folds every name into m_folded and sorts m_names by them (after buildTree, as the index
    // holds places' positions); learns the names of the countries.
    bool indexNames();
    void buildTree(int begin, int end, int depth);
    void within(const double p[3], double chord, int begin, int end, int depth,
                std::vector<Hit>& out) const;
    void nearest(const double p[3], int begin, int end, int depth, Hit& best) const;
    QStringView nameOf(const Place& place) const {
        return QStringView(m_text.constData() + place.nameOffset, place.nameLength);
    }
    QStringView foldedOf(const Name& name) const {
        return QStringView(m_folded.constData() + name.offset, qsizetype(name.length));
    }
    Placemark placemarkOf(const Place& place) const;
    // The two letters of a country code as one number, the key of the country tables.
    static quint16 countryKey(const char code[2]) {
        return quint16(quint8(code[0]) << 8 | quint8(code[1]));
    }
    QString countryName(const char code[2]) const;
    // A word typed after a comma, folded; whether it is a whole country name.
    struct Qualifier {
        QString text;
        bool isCountry;
    };
    // Whether a qualifier names the place's country or region.
    bool qualifies(const Place& place, const Qualifier& qualifier) const;

    // Places in k-d tree order: each range's median splits it on the depth's axis.
    std::vector<Place> m_places;
    std::vector<Region> m_regions;
    // Every place's name, one after another (in the order of the file).
    QString m_text;
    // Every place's folded name, one after another.
    QString m_folded;
    // The folded names, sorted by their text, then by place.
    std::vector<Name> m_names;
    // Country code (countryKey) to the country's name.
    QHash<quint16, QString> m_countryNames;
    // Country code to the folded country name and folded code, for "Name, Country".
    QHash<quint16, std::pair<QString, QString>> m_countryKeys;
};

} // namespace tagmoor
