#include "geo/Gazetteer.h"

#include "geo/GeoData.h"

#include <QDataStream>
#include <QLoggingCategory>

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cmath>
#include <numbers>

Q_LOGGING_CATEGORY(lcGazetteer, "tagmoor.geo.gazetteer", QtInfoMsg)

namespace tagmoor {

namespace {

constexpr double kEarthRadiusKm = 6371.0088;
// Candidates of the locality: places within this distance.
constexpr double kSearchRadiusKm = 30;
// Farther than this from every place, a position has no placemark.
constexpr double kMaxDistanceKm = 300;
// A quarter of a city names the sub-locality when it is this close.
constexpr double kQuarterRadiusKm = 3;

void toSphere(double latitude, double longitude, double out[3]) {
    constexpr double toRad = std::numbers::pi / 180;
    const double phi = latitude * toRad;
    const double lambda = longitude * toRad;
    out[0] = std::cos(phi) * std::cos(lambda);
    out[1] = std::cos(phi) * std::sin(lambda);
    out[2] = std::sin(phi);
}

// Straight-line distance through the sphere for a distance along it, and back.
double chordOf(double km) {
    return 2 * std::sin(std::min(km / kEarthRadiusKm, std::numbers::pi) / 2);
}
double kmOf(double chord) {
    return 2 * kEarthRadiusKm * std::asin(std::min(1.0, chord / 2));
}

// How far a place reaches: a town of 10,000 people covers about a kilometre around its
// centre, a city of two million nearly nine.
double reachKm(quint32 population) {
    return std::max(1.0, 0.006 * std::sqrt(double(population)));
}

QString toQString(const icu::UnicodeString& text) {
    return QString(reinterpret_cast<const QChar*>(text.getBuffer()), text.length());
}

// "Zürich (Kreis 1) / Lindenhof" is a quarter of Zürich: the part after the last " / " names
// it; a name without one stays whole.
QString quarterName(QStringView name) {
    const qsizetype slash = name.lastIndexOf(u" / ");
    return (slash < 0 ? name : name.sliced(slash + 3)).toString();
}

// One length-prefixed UTF-8 text into `bytes`; false when the data ends first.
bool readUtf8(QDataStream& in, QByteArray& bytes) {
    quint16 length = 0;
    in >> length;
    bytes.resize(length);
    return in.readRawData(bytes.data(), length) == length;
}

} // namespace

QString Gazetteer::fold(QStringView text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* nfd = icu::Normalizer2::getNFDInstance(status);
    icu::UnicodeString source(reinterpret_cast<const UChar*>(text.utf16()), int32_t(text.size()));
    icu::UnicodeString decomposed = U_SUCCESS(status) ? nfd->normalize(source, status) : source;
    if (U_FAILURE(status))
        decomposed = source;
    icu::UnicodeString bare;
    for (int32_t i = 0; i < decomposed.length();) {
        const UChar32 c = decomposed.char32At(i);
        if (u_charType(c) != U_NON_SPACING_MARK)
            bare.append(c);
        i += U16_LENGTH(c);
    }
    bare.foldCase();
    return toQString(bare).simplified();
}

std::shared_ptr<const Gazetteer> Gazetteer::fromFile(const QString& path) {
    return fromData(GeoData::readCompressed(path));
}

std::shared_ptr<const Gazetteer> Gazetteer::fromData(const QByteArray& data) {
    QDataStream in(data);
    in.setByteOrder(QDataStream::LittleEndian);
    char magic[4] = {};
    quint32 version = 0;
    quint32 count = 0;
    if (in.readRawData(magic, 4) != 4 || std::string_view(magic, 4) != "TMPL")
        return nullptr;
    in >> version;
    if (version != 2)
        return nullptr;

    QByteArray bytes; // the UTF-8 of one text, reused from one to the next
    auto readText = [&]() { return readUtf8(in, bytes) ? QString::fromUtf8(bytes) : QString(); };

    std::shared_ptr<Gazetteer> gazetteer(new Gazetteer);
    quint32 regionCount = 0;
    in >> regionCount;
    if (regionCount >= kNoRegion)
        return nullptr;
    gazetteer->m_regions.reserve(regionCount);
    for (quint32 i = 0; i < regionCount; ++i) {
        char country[2];
        in.readRawData(country, 2);
        Region region;
        region.code = readText();
        region.name = readText();
        region.folded = fold(region.name);
        gazetteer->m_regions.push_back(std::move(region));
    }
    in >> count;
    if (in.status() != QDataStream::Ok || count > 10'000'000)
        return nullptr;
    // The rest of the file is the places: fixed fields, then the name's length and its UTF-8.
    // Less the fixed parts, what is left is the UTF-8 of all names, which takes no fewer
    // units than their UTF-16; less than nothing is a file cut short.
    constexpr qint64 kFixedBytes = 4 + 4 + 4 + 2 + 1 + 2 + 2;
    const qint64 nameBytes = qint64(data.size()) - in.device()->pos() - kFixedBytes * count;
    if (nameBytes < 0 || !gazetteer->readPlaces(in, count, nameBytes))
        return nullptr;
    gazetteer->buildTree(0, int(count), 0);
    if (!gazetteer->indexNames())
        return nullptr;
    qCDebug(lcGazetteer) << "loaded" << count << "places";
    return gazetteer;
}

bool Gazetteer::readPlaces(QDataStream& in, quint32 count, qint64 nameBytes) {
    m_places.reserve(count);
    m_text.reserve(nameBytes);
    QByteArray bytes;
    for (quint32 i = 0; i < count; ++i) {
        qint32 lat = 0;
        qint32 lon = 0;
        Place place{};
        in >> lat >> lon >> place.population;
        in.readRawData(place.country, 2);
        in >> place.kind >> place.region;
        if (!readUtf8(in, bytes) || in.status() != QDataStream::Ok ||
            (place.region != kNoRegion && place.region >= m_regions.size()))
            return false;
        const QString name = QString::fromUtf8(bytes);
        if (quint64(m_text.size()) + quint64(name.size()) > std::numeric_limits<quint32>::max())
            return false;
        place.nameOffset = quint32(m_text.size());
        place.nameLength = quint16(name.size()); // UTF-16 is never longer than UTF-8
        m_text.append(name);
        place.latitude = float(lat / 1e5);
        place.longitude = float(lon / 1e5);
        double p[3];
        toSphere(place.latitude, place.longitude, p);
        place.x = p[0];
        place.y = p[1];
        place.z = p[2];
        m_places.push_back(place);
    }
    m_text.squeeze();
    return true;
}

bool Gazetteer::indexNames() {
    m_names.reserve(m_places.size());
    // Folding keeps the length of most names (accents go, a few letters become two): a little
    // room beyond the names spares growing the buffer, and the squeeze gives back the rest.
    m_folded.reserve(m_text.size() + m_text.size() / 32);
    for (quint32 i = 0; i < m_places.size(); ++i) {
        const Place& place = m_places[i];
        const QString key = fold(nameOf(place));
        if (quint64(m_folded.size()) + quint64(key.size()) > std::numeric_limits<quint32>::max())
            return false;
        m_names.push_back({quint32(m_folded.size()), quint32(key.size()), i});
        m_folded.append(key);
        const quint16 code = countryKey(place.country);
        if (!m_countryNames.contains(code)) {
            const QString name = countryName(place.country);
            m_countryNames.insert(code, name);
            m_countryKeys.insert(code, {fold(name), fold(QString::fromLatin1(place.country, 2))});
        }
    }
    m_folded.squeeze();
    std::sort(m_names.begin(), m_names.end(), [this](const Name& a, const Name& b) {
        const int order = foldedOf(a).compare(foldedOf(b));
        return order != 0 ? order < 0 : a.place < b.place;
    });
    return true;
}

QString Gazetteer::countryName(const char code[2]) const {
    const auto known = m_countryNames.constFind(countryKey(code));
    if (known != m_countryNames.constEnd())
        return *known;
    const std::string iso(code, 2);
    icu::UnicodeString name;
    icu::Locale("", iso.c_str()).getDisplayCountry(icu::Locale::getDefault(), name);
    return toQString(name);
}

void Gazetteer::buildTree(int begin, int end, int depth) {
    if (end - begin <= 1)
        return;
    const int axis = depth % 3;
    const int mid = begin + (end - begin) / 2;
    auto coordinate = [axis](const Place& place) {
        return axis == 0 ? place.x : axis == 1 ? place.y : place.z;
    };
    std::nth_element(m_places.begin() + begin, m_places.begin() + mid, m_places.begin() + end,
                     [&](const Place& a, const Place& b) { return coordinate(a) < coordinate(b); });
    buildTree(begin, mid, depth + 1);
    buildTree(mid + 1, end, depth + 1);
}

void Gazetteer::within(const double p[3], double chord, int begin, int end, int depth,
                       std::vector<Hit>& out) const {
    if (begin >= end)
        return;
    const int mid = begin + (end - begin) / 2;
    const Place& place = m_places[std::size_t(mid)];
    const double dx = place.x - p[0];
    const double dy = place.y - p[1];
    const double dz = place.z - p[2];
    const double distance = std::sqrt(dx * dx + dy * dy + dz * dz);
    if (distance <= chord)
        out.push_back({mid, distance});
    const int axis = depth % 3;
    const double split = axis == 0 ? place.x : axis == 1 ? place.y : place.z;
    const double delta = p[axis] - split;
    if (delta <= chord)
        within(p, chord, begin, mid, depth + 1, out);
    if (delta >= -chord)
        within(p, chord, mid + 1, end, depth + 1, out);
}

void Gazetteer::nearest(const double p[3], int begin, int end, int depth, Hit& best) const {
    if (begin >= end)
        return;
    const int mid = begin + (end - begin) / 2;
    const Place& place = m_places[std::size_t(mid)];
    const double dx = place.x - p[0];
    const double dy = place.y - p[1];
    const double dz = place.z - p[2];
    const double distance = std::sqrt(dx * dx + dy * dy + dz * dz);
    if (distance < best.chord)
        best = {mid, distance};
    const int axis = depth % 3;
    const double split = axis == 0 ? place.x : axis == 1 ? place.y : place.z;
    const double delta = p[axis] - split;
    const bool lowFirst = delta < 0;
    if (lowFirst)
        nearest(p, begin, mid, depth + 1, best);
    else
        nearest(p, mid + 1, end, depth + 1, best);
    if (std::fabs(delta) < best.chord) {
        if (lowFirst)
            nearest(p, mid + 1, end, depth + 1, best);
        else
            nearest(p, begin, mid, depth + 1, best);
    }
}

Placemark Gazetteer::placemarkOf(const Place& place) const {
    Placemark mark;
    mark.locality = nameOf(place).toString();
    if (place.region != kNoRegion) {
        const Region& region = m_regions[place.region];
        mark.administrativeAreaCode = region.code;
        mark.administrativeArea = region.name;
    }
    mark.isoCountryCode = QString::fromLatin1(place.country, 2).trimmed();
    mark.country = m_countryNames.value(countryKey(place.country));
    mark.latitude = place.latitude;
    mark.longitude = place.longitude;
    mark.population = place.population;
    return mark;
}

std::optional<Placemark> Gazetteer::reverse(double latitude, double longitude) const {
    if (m_places.empty() || !std::isfinite(latitude) || !std::isfinite(longitude))
        return std::nullopt;
    double p[3];
    toSphere(latitude, longitude, p);

    std::vector<Hit> hits;
    within(p, chordOf(kSearchRadiusKm), 0, size(), 0, hits);
    if (hits.empty()) {
        Hit best{-1, std::numeric_limits<double>::infinity()};
        nearest(p, 0, size(), 0, best);
        if (best.index < 0 || kmOf(best.chord) > kMaxDistanceKm)
            return std::nullopt;
        hits.push_back(best);
    }

    // The locality: the place whose reach the position lies deepest in. Quarters of a city
    // are not localities of their own.
    const Hit* locality = nullptr;
    double bestScore = std::numeric_limits<double>::infinity();
    const Hit* quarter = nullptr;
    for (const Hit& hit : hits) {
        const Place& place = m_places[std::size_t(hit.index)];
        const double km = kmOf(hit.chord);
        if (place.kind == 1) {
            if (km <= kQuarterRadiusKm && (!quarter || hit.chord < quarter->chord))
                quarter = &hit;
            continue;
        }
        const double score = km / reachKm(place.population);
        if (score < bestScore) {
            bestScore = score;
            locality = &hit;
        }
    }
    if (!locality) {
        // Only quarters of a place are near, none close enough to count as one: the nearest
        // of them stands for the locality.
        locality = &*std::min_element(hits.begin(), hits.end(),
                                      [](const Hit& a, const Hit& b) { return a.chord < b.chord; });
        quarter = nullptr;
    }
    Placemark mark = placemarkOf(m_places[std::size_t(locality->index)]);
    if (quarter && quarter != locality) {
        const Place& place = m_places[std::size_t(quarter->index)];
        if (std::memcmp(place.country, m_places[std::size_t(locality->index)].country, 2) == 0)
            mark.subLocality = quarterName(nameOf(place));
    }
    if (mark.subLocality == mark.locality)
        mark.subLocality.clear();
    return mark;
}

bool Gazetteer::qualifies(const Place& place, const Qualifier& qualifier) const {
    const auto country = m_countryKeys.constFind(countryKey(place.country));
    if (country != m_countryKeys.constEnd()) {
        // A whole country name ("Niger") means that country, not every one it begins.
        if (qualifier.isCountry ? country->first == qualifier.text
                                : country->first.startsWith(qualifier.text))
            return true;
        if (country->second == qualifier.text)
            return true;
    }
    return place.region != kNoRegion && m_regions[place.region].folded.startsWith(qualifier.text);
}

QList<Placemark> Gazetteer::forward(const QString& text, int limit) const {
    QStringList qualifiers = text.split(QLatin1Char(','));
    const QString key = fold(qualifiers.takeFirst());
    if (key.isEmpty() || limit <= 0)
        return {};
    std::vector<Qualifier> narrowing;
    for (const QString& typed : std::as_const(qualifiers)) {
        Qualifier qualifier{fold(typed), false};
        if (qualifier.text.isEmpty())
            continue;
        for (const auto& [name, code] : std::as_const(m_countryKeys))
            qualifier.isCountry = qualifier.isCountry || name == qualifier.text;
        narrowing.push_back(std::move(qualifier));
    }

    // Every name that starts with the key lies in one run of the sorted list. A short key in
    // a large run is cut off; a longer key narrows it.
    constexpr int kMaxRun = 20000;
    auto it =
        std::lower_bound(m_names.begin(), m_names.end(), QStringView(key),
                         [this](const Name& entry, QStringView k) { return foldedOf(entry) < k; });
    std::vector<const Name*> run;
    for (; it != m_names.end() && foldedOf(*it).startsWith(key) && int(run.size()) < kMaxRun;
         ++it) {
        const Place& place = m_places[it->place];
        if (std::all_of(narrowing.cbegin(), narrowing.cend(),
                        [&](const Qualifier& q) { return qualifies(place, q); }))
            run.push_back(&*it);
    }
    auto rank = [&](const Name* entry) {
        const Place& place = m_places[entry->place];
        // Exact names first; among them the capital, then the larger place.
        return std::tuple(qsizetype(entry->length) != key.size(), place.kind != 2,
                          -qint64(place.population));
    };
    const std::size_t keep = std::min(run.size(), std::size_t(limit));
    std::partial_sort(run.begin(), run.begin() + std::ptrdiff_t(keep), run.end(),
                      [&](const auto* a, const auto* b) { return rank(a) < rank(b); });
    QList<Placemark> marks;
    for (std::size_t i = 0; i < keep; ++i)
        marks.append(placemarkOf(m_places[run[i]->place]));
    return marks;
}

} // namespace tagmoor
