// The tags beyond the key lists: keyword paths, rating and label, the IPTC Core and Extension
// texts, and the copies of a caption, creator, rights or location value.
#include "metadata/ExtraTags.h"

#include "metadata/MetadataBlockReader.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/StandardForm.h"
#include "metadata/XmpNamespaces.h"
#include "metadata/XmpSidecar.h"
#include "model/KeyTable.h"

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <functional>
#include <map>
#include <string_view>
#include <tuple>
#include <typeinfo>

namespace tagmoor {

namespace {

constexpr const char* kIptcKeywords = "Iptc.Application2.Keywords";
constexpr const char* kSubject = "Xmp.dc.subject";
constexpr const char* kHierarchical = "Xmp.lr.hierarchicalSubject";
constexpr const char* kTagsList = "Xmp.digiKam.TagsList";
constexpr const char* kXmpRating = "Xmp.xmp.Rating";
constexpr const char* kExifRating = "Exif.Image.Rating";
constexpr const char* kExifRatingPercent = "Exif.Image.RatingPercent";
constexpr const char* kLabel = "Xmp.xmp.Label";
constexpr const char* kPersons = "Xmp.iptcExt.PersonInImage";
constexpr const char* kDefaultLanguage = "x-default";

QString textOf(const std::string& text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

// What textOf(value.toString()) gives, without Exiv2's string stream for the two kinds that
// write their bytes as they stand: a plain string, and an XMP text that is neither an array
// nor a struct (which would write a "type=" before them).
// (Exiv2's value classes have no subclasses: each is told by its exact type.)
QString wholeTextOf(const Exiv2::Value& value) {
    const std::type_info& type = typeid(value);
    if (type == typeid(Exiv2::StringValue))
        return textOf(static_cast<const Exiv2::StringValue&>(value).value_);
    if (type == typeid(Exiv2::XmpTextValue)) {
        const auto& xmp = static_cast<const Exiv2::XmpTextValue&>(value);
        if (xmp.xmpArrayType() == Exiv2::XmpValue::xaNone &&
            xmp.xmpStruct() == Exiv2::XmpValue::xsNone)
            return textOf(xmp.value_);
    }
    return textOf(value.toString());
}

std::string bytesOf(const QString& text) {
    return text.toUtf8().toStdString();
}

bool startsWith(const char* key, const char* prefix) {
    return std::string_view(key).substr(0, std::string_view(prefix).size()) == prefix;
}

bool isArray(Exiv2::TypeId type) {
    return type == Exiv2::xmpBag || type == Exiv2::xmpSeq || type == Exiv2::xmpAlt;
}

// The x-default item of a language alternative, else its first item.
std::string defaultLanguageText(const Exiv2::LangAltValue& value) {
    const auto found = value.value_.find(kDefaultLanguage);
    if (found != value.value_.end())
        return found->second;
    return value.value_.empty() ? std::string() : value.value_.begin()->second;
}

// The items of an XMP value (an array's items, or a simple value when not empty).
QStringList itemsOf(const Exiv2::Xmpdatum* found) {
    if (!found)
        return {};
    QStringList items;
    const Exiv2::Value& value = found->value();
    if (isArray(value.typeId())) {
        for (long i = 0; i < value.count(); ++i)
            items << textOf(value.toString(i));
    } else if (QString text = wholeTextOf(value); !text.isEmpty()) {
        items << std::move(text);
    }
    return items;
}

// An XMP value as one text: a language alternative's default item, an array's items joined.
std::optional<QString> textOf(const Exiv2::Xmpdatum* found) {
    if (!found)
        return std::nullopt;
    const Exiv2::Value& value = found->value();
    if (value.typeId() == Exiv2::langAlt)
        return textOf(defaultLanguageText(static_cast<const Exiv2::LangAltValue&>(value)));
    if (isArray(value.typeId()))
        return itemsOf(found).join(QStringLiteral("; "));
    return wholeTextOf(value);
}

const Exiv2::Xmpdatum* findXmp(const Exiv2::XmpData& xmp, const char* key) {
    const auto found = xmp.findKey(Exiv2::XmpKey(key));
    return found == xmp.end() ? nullptr : &*found;
}

// The first datum of each key of an XMP block, from one walk over it: looking keys up one by
// one makes a key object each time and builds every datum's key text again.
class XmpFirstByKey {
public:
    explicit XmpFirstByKey(const Exiv2::XmpData& xmp) {
        for (const Exiv2::Xmpdatum& datum : xmp)
            m_first.try_emplace(datum.key(), &datum);
    }
    const Exiv2::Xmpdatum* operator()(const char* key) const {
        const auto found = m_first.find(std::string_view(key));
        return found == m_first.end() ? nullptr : found->second;
    }

private:
    std::map<std::string, const Exiv2::Xmpdatum*, std::less<>> m_first;
};

// The items of one IPTC dataset, told by its record and number rather than by each datum's
// key text, which Exiv2 builds anew for every call.
QStringList iptcItems(const Exiv2::IptcData& iptc, const Exiv2::IptcKey& wanted) {
    QStringList items;
    for (const Exiv2::Iptcdatum& datum : iptc)
        if (datum.record() == wanted.record() && datum.tag() == wanted.tag())
            items << (datum.typeId() == Exiv2::invalidTypeId ? textOf(std::string())
                                                             : wholeTextOf(datum.value()));
    return items;
}

std::optional<QString> copyText(const Exiv2::Image& image, const CopyKey& copy) {
    if (startsWith(copy.key, "Xmp."))
        return textOf(findXmp(image.xmpData(), copy.key));
    if (startsWith(copy.key, "Iptc.")) {
        const QStringList items = iptcItems(image.iptcData(), Exiv2::IptcKey(copy.key));
        return items.isEmpty() ? std::nullopt : std::optional<QString>(items.first());
    }
    const Exiv2::ExifData& exif = image.exifData();
    const auto found = exif.findKey(Exiv2::ExifKey(copy.key));
    if (found == exif.end())
        return std::nullopt;
    return textOf(found->toString());
}

void eraseXmp(Exiv2::XmpData& xmp, const char* key) {
    const Exiv2::XmpKey xmpKey(key);
    for (auto it = xmp.findKey(xmpKey); it != xmp.end(); it = xmp.findKey(xmpKey))
        xmp.erase(it);
}

void setXmpList(Exiv2::XmpData& xmp, const char* key, Exiv2::TypeId type,
                const QStringList& items) {
    eraseXmp(xmp, key);
    if (items.isEmpty())
        return;
    Exiv2::XmpArrayValue value(type);
    for (const QString& item : items)
        value.read(bytesOf(item));
    xmp.add(Exiv2::XmpKey(key), &value);
}

// The x-default item of a language alternative is replaced; its other languages stay.
void setLangAlt(Exiv2::XmpData& xmp, const char* key, const QString& text) {
    Exiv2::LangAltValue value;
    const auto found = xmp.findKey(Exiv2::XmpKey(key));
    if (found != xmp.end() && found->value().typeId() == Exiv2::langAlt)
        value.value_ = static_cast<const Exiv2::LangAltValue&>(found->value()).value_;
    eraseXmp(xmp, key);
    value.value_[kDefaultLanguage] = bytesOf(text);
    xmp.add(Exiv2::XmpKey(key), &value);
}

void setIptcList(Exiv2::IptcData& iptc, const char* key, const QStringList& items) {
    const Exiv2::IptcKey iptcKey(key);
    for (auto it = iptc.begin(); it != iptc.end();) {
        if (it->record() == iptcKey.record() && it->tag() == iptcKey.tag())
            it = iptc.erase(it);
        else
            ++it;
    }
    for (const QString& item : items) {
        Exiv2::StringValue value(bytesOf(item));
        iptc.add(iptcKey, &value);
    }
}

void eraseExif(Exiv2::ExifData& exif, const char* key) {
    const auto found = exif.findKey(Exiv2::ExifKey(key));
    if (found != exif.end())
        exif.erase(found);
}

bool isAscii(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

// The names of a creator text: Exif's Artist holds several as "Name; Name".
QStringList namesOf(const QString& text) {
    QStringList names;
    for (const QString& name : text.split(QLatin1Char(';')))
        if (!name.trimmed().isEmpty())
            names << name.trimmed();
    return names;
}

// What a write did, so that the blocks it touched are marked once at the end.
struct Touched {
    bool xmp = false;
    bool wideIptc = false;
};

void writeKeywords(Exiv2::Image& image, const ExtraEdits& edits, Touched& touched) {
    if (edits.addKeywords.isEmpty() && edits.removeKeywords.isEmpty())
        return;
    const KeywordLists before = readExtraValues(image).keywords;
    // The two flat lists are one list of the photo's keywords (as the standard form reads
    // them): an edit leaves both holding the same items.
    QStringList flat = before.iptc;
    for (const QString& keyword : before.subject)
        if (!flat.contains(keyword))
            flat << keyword;
    const KeywordLists after = withKeywordEdits({flat, flat, before.hierarchical, before.tagsList},
                                                edits.addKeywords, edits.removeKeywords);
    if (after.iptc == flat && after.hierarchical == before.hierarchical &&
        after.tagsList == before.tagsList)
        return;
    Exiv2::XmpData& xmp = image.xmpData();
    if (after.iptc != before.iptc) {
        setIptcList(image.iptcData(), kIptcKeywords, after.iptc);
        touched.wideIptc = touched.wideIptc || !isAscii(after.iptc.join(QString()));
    }
    const std::array<std::tuple<const char*, Exiv2::TypeId, const QStringList*, const QStringList*>,
                     3>
        lists{{{kSubject, Exiv2::xmpBag, &before.subject, &after.subject},
               {kHierarchical, Exiv2::xmpBag, &before.hierarchical, &after.hierarchical},
               {kTagsList, Exiv2::xmpSeq, &before.tagsList, &after.tagsList}}};
    for (const auto& [key, type, old, now] : lists) {
        if (*old == *now)
            continue;
        setXmpList(xmp, key, type, *now);
        touched.xmp = true;
    }
}

// The rating in XMP, and in Exif's stars and percentage, as Windows reads them. A rejected
// photo has no Exif form (both tags hold only 0 to 5 and 0 to 99), so its Exif rating goes.
void writeRating(Exiv2::Image& image, int rating, Touched& touched) {
    image.xmpData()[kXmpRating] = std::to_string(rating);
    touched.xmp = true;
    Exiv2::ExifData& exif = image.exifData();
    if (rating < 0) {
        eraseExif(exif, kExifRating);
        eraseExif(exif, kExifRatingPercent);
        return;
    }
    exif[kExifRating] = uint16_t(rating);
    exif[kExifRatingPercent] = uint16_t(ratingPercent(rating));
}

// The contact fields live in one structure, made with its first field and removed with its
// last.
void writeContactField(Exiv2::XmpData& xmp, const char* key, const QString& text) {
    const Exiv2::XmpKey structKey(kCreatorContactKey);
    if (!text.isEmpty()) {
        if (xmp.findKey(structKey) == xmp.end()) {
            Exiv2::XmpTextValue value;
            value.setXmpStruct();
            xmp.add(structKey, &value);
        }
        xmp[key] = bytesOf(text);
        return;
    }
    eraseXmp(xmp, key);
    const std::string prefix = std::string(kCreatorContactKey) + "/";
    const bool fieldsLeft = std::any_of(xmp.begin(), xmp.end(), [&](const Exiv2::Xmpdatum& d) {
        return d.key().compare(0, prefix.size(), prefix) == 0;
    });
    if (!fieldsLeft)
        eraseXmp(xmp, kCreatorContactKey);
}

void writeTexts(Exiv2::Image& image, const ExtraEdits& edits, Touched& touched) {
    Exiv2::XmpData& xmp = image.xmpData();
    for (const ExtraTextRow& row : kExtraTextRows) {
        const std::optional<QString>& text = edits.texts[std::size_t(row.text)];
        if (!text)
            continue;
        touched.xmp = true;
        if (row.kind == ExtraTextKind::Contact)
            writeContactField(xmp, row.key, *text);
        else if (text->isEmpty())
            eraseXmp(xmp, row.key);
        else if (row.kind == ExtraTextKind::LangAlt)
            setLangAlt(xmp, row.key, *text);
        else
            xmp[row.key] = bytesOf(*text);
    }
}

void writeCopy(Exiv2::Image& image, const CopyWrite& write, Touched& touched) {
    const char* key = write.copy.key;
    const QString& text = write.text;
    if (startsWith(key, "Xmp.")) {
        Exiv2::XmpData& xmp = image.xmpData();
        touched.xmp = true;
        if (text.isEmpty())
            eraseXmp(xmp, key);
        else if (write.copy.form == CopyForm::LangAlt)
            setLangAlt(xmp, key, text);
        else if (write.copy.form == CopyForm::Seq)
            setXmpList(xmp, key, Exiv2::xmpSeq, namesOf(text));
        else
            xmp[key] = bytesOf(text);
    } else if (startsWith(key, "Iptc.")) {
        setIptcList(image.iptcData(), key, text.isEmpty() ? QStringList() : QStringList{text});
        touched.wideIptc = touched.wideIptc || !isAscii(text);
    } else if (text.isEmpty()) {
        eraseExif(image.exifData(), key);
    } else {
        image.exifData()[key] = bytesOf(text);
    }
}

// Whether the XMP block holds what the file's packet does: no packet, or one that decodes.
bool xmpPacketReadable(const Exiv2::Image& image) {
    if (image.xmpPacket().empty() || !image.xmpData().empty())
        return true;
    Exiv2::XmpData probe;
    const auto xmpLock = lockXmpToolkit();
    return decodeXmpPacket(probe, image.xmpPacket()) == 0;
}

// The date and time of a position, in UTC, as GPS receivers stamp them.
void writeGpsTime(Exiv2::ExifData& exif, const QDateTime& moment) {
    const QDateTime utc = moment.toUTC();
    exif["Exif.GPSInfo.GPSDateStamp"] = bytesOf(utc.toString(QStringLiteral("yyyy:MM:dd")));
    Exiv2::URationalValue time;
    for (const int part : {utc.time().hour(), utc.time().minute(), utc.time().second()})
        time.value_.emplace_back(uint32_t(part), 1U);
    exif["Exif.GPSInfo.GPSTimeStamp"] = time;
}

// The zone offsets of the Exif dates (Exif 2.31), each beside its date.
void writeDateOffsets(Exiv2::ExifData& exif, const ExifDateOffsets& offsets) {
    const std::pair<const char*, const std::optional<QString>*> tags[] = {
        {"Exif.Photo.OffsetTime", &offsets.modify},
        {"Exif.Photo.OffsetTimeOriginal", &offsets.original},
        {"Exif.Photo.OffsetTimeDigitized", &offsets.digitized}};
    for (const auto& [key, offset] : tags) {
        if (*offset)
            exif[key] = bytesOf(**offset);
    }
}

} // namespace

void applyExtraWrite(Exiv2::Image& image, const ExtraWrite& write, bool declareIptcCharset) {
    if (write.isEmpty())
        return;
    const ExtraEdits& edits = write.edits;
    Touched touched;
    writeKeywords(image, edits, touched);
    if (edits.rating)
        writeRating(image, *edits.rating, touched);
    if (edits.label) {
        touched.xmp = true;
        if (edits.label->isEmpty())
            eraseXmp(image.xmpData(), kLabel);
        else
            image.xmpData()[kLabel] = bytesOf(colourLabelOf(*edits.label).value_or(*edits.label));
    }
    writeTexts(image, edits, touched);
    if (edits.persons) {
        setXmpList(image.xmpData(), kPersons, Exiv2::xmpBag, *edits.persons);
        touched.xmp = true;
    }
    // A copy goes only into a block the file can hold, and never into an XMP packet that
    // could not be read: writing it would replace the packet and lose all it holds.
    const bool xmpTakesCopies = image.supportsMetadata(Exiv2::mdXmp) && xmpPacketReadable(image);
    const bool iptcTakesCopies = image.supportsMetadata(Exiv2::mdIptc);
    for (const CopyWrite& copy : write.copies) {
        const char* key = copy.copy.key;
        if ((startsWith(key, "Xmp.") && !xmpTakesCopies) ||
            (startsWith(key, "Iptc.") && !iptcTakesCopies))
            continue;
        writeCopy(image, copy, touched);
    }
    if (edits.gpsTime)
        writeGpsTime(image.exifData(), *edits.gpsTime);
    writeDateOffsets(image.exifData(), edits.dateOffsets);
    // The packet as read no longer holds what the XMP block does.
    if (touched.xmp)
        image.writeXmpFromPacket(false);
    if (touched.wideIptc && declareIptcCharset)
        declareIptcUtf8(image);
}

void seedKeywordLists(Exiv2::XmpData& xmp, const KeywordLists& lists) {
    for (const char* key : {kSubject, kHierarchical, kTagsList})
        if (xmp.findKey(Exiv2::XmpKey(key)) != xmp.end())
            return;
    QStringList flat = lists.iptc;
    for (const QString& keyword : lists.subject)
        if (!flat.contains(keyword))
            flat << keyword;
    setXmpList(xmp, kSubject, Exiv2::xmpBag, flat);
    setXmpList(xmp, kHierarchical, Exiv2::xmpBag, lists.hierarchical);
    setXmpList(xmp, kTagsList, Exiv2::xmpSeq, lists.tagsList);
}

ExtraValues readExtraValues(const Exiv2::Image& image) {
    ExtraValues values;
    const XmpFirstByKey xmp(image.xmpData());
    static const Exiv2::IptcKey iptcKeywords(kIptcKeywords);
    values.keywords.iptc = iptcItems(image.iptcData(), iptcKeywords);
    values.keywords.subject = itemsOf(xmp(kSubject));
    values.keywords.hierarchical = itemsOf(xmp(kHierarchical));
    values.keywords.tagsList = itemsOf(xmp(kTagsList));
    bool ok = false;
    if (const auto rating = textOf(xmp(kXmpRating))) {
        // XMP allows a real number of stars; the whole part is the rating.
        const int stars = int(rating->trimmed().toDouble(&ok));
        if (ok)
            values.rating = stars;
    }
    if (!values.rating) {
        const auto found = image.exifData().findKey(Exiv2::ExifKey(kExifRating));
        if (found != image.exifData().end() && found->count() > 0)
            values.rating = int(found->toLong(0));
    }
    values.label = textOf(xmp(kLabel));
    for (const ExtraTextRow& row : kExtraTextRows)
        values.texts[std::size_t(row.text)] = textOf(xmp(row.key));
    values.persons = itemsOf(xmp(kPersons));
    return values;
}

namespace {

// Lays the values of a sidecar over the photo's own. The keyword lists go together: a sidecar
// that holds any keyword holds the photo's whole set, as the programs that write one keep it.
void laySidecarValues(ExtraValues& values, const ExtraValues& sidecar) {
    ExtraSources& from = values.fromSidecar;
    const KeywordLists& lists = sidecar.keywords;
    if (!lists.iptc.isEmpty() || !lists.subject.isEmpty() || !lists.hierarchical.isEmpty() ||
        !lists.tagsList.isEmpty()) {
        values.keywords = lists;
        from.keywords = true;
    }
    if (sidecar.rating) {
        values.rating = sidecar.rating;
        from.rating = true;
    }
    if (sidecar.label) {
        values.label = sidecar.label;
        from.label = true;
    }
    for (std::size_t i = 0; i < sidecar.texts.size(); ++i) {
        if (!sidecar.texts[i])
            continue;
        values.texts[i] = sidecar.texts[i];
        from.texts[i] = true;
    }
    if (!sidecar.persons.isEmpty()) {
        values.persons = sidecar.persons;
        from.persons = true;
    }
}

} // namespace

std::optional<ExtraValues> readExtraValuesOf(const QString& path, SidecarValues sidecar) {
    std::optional<ExtraValues> values;
    MetadataBlockReader::readParsed(
        path, [&](const Exiv2::Image& image) { values = readExtraValues(image); });
    return withSidecarValues(path, std::move(values), sidecar);
}

std::optional<ExtraValues> withSidecarValues(const QString& path, std::optional<ExtraValues> values,
                                             SidecarValues sidecar) {
    if (!values || sidecar == SidecarValues::Ignored || !sidecarsAreRead())
        return values;
    return withSidecarValues(std::move(values), readSidecarOf(path));
}

std::optional<ExtraValues> withSidecarValues(std::optional<ExtraValues> values,
                                             const std::optional<SidecarRead>& sidecar) {
    if (!values || !sidecar || !sidecar->bytes)
        return values;
    if (const auto inSidecar = readSidecarExtras(*sidecar->bytes)) {
        values->sidecarPath = sidecar->file.path;
        laySidecarValues(*values, *inSidecar);
    }
    return values;
}

std::optional<QString> preferredCopyText(const Exiv2::Image& image, const CopyGroup& group) {
    for (const CopyKey& copy : group.copies()) {
        const std::optional<QString> text = copyText(image, copy);
        if (text && !text->trimmed().isEmpty())
            return text;
    }
    return std::nullopt;
}

void preferCopies(const Exiv2::Image& image, MetadataFieldSet& set) {
    for (const CopyGroup& group : copyGroups()) {
        const std::optional<QString> text = preferredCopyText(image, group);
        if (!text)
            continue;
        for (const CopyKey& copy : group.copies())
            if (const KeyRow* row = findKeyRow(QLatin1String(copy.key)))
                set.at(*row) = PropertyValue(*text);
    }
}

} // namespace tagmoor
