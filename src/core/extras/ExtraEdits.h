#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <span>

namespace tagmoor {

// How a text beyond the form's fields is held in XMP.
enum class ExtraTextKind {
    Text,    // a simple property
    LangAlt, // a language alternative, written as its x-default item
    Contact, // a field of the creator's contact info structure
};

// The texts beyond the form's fields, one row each: the enumerator, the XMP key, how the
// value is held, the command line's option (without "--") and the name in JSON output.
#define TAGMOOR_EXTRA_TEXTS(X)                                                                     \
    X(AltText, "Xmp.iptc.AltTextAccessibility", LangAlt, "alt-text", "altText")                    \
    X(ExtDescription, "Xmp.iptc.ExtDescrAccessibility", LangAlt, "ext-description",                \
      "extDescription")                                                                            \
    X(Event, "Xmp.iptcExt.Event", LangAlt, "event", "event")                                       \
    X(UsageTerms, "Xmp.xmpRights.UsageTerms", LangAlt, "usage-terms", "usageTerms")                \
    X(CreditLine, "Xmp.photoshop.Credit", Text, "credit-line", "creditLine")                       \
    X(Instructions, "Xmp.photoshop.Instructions", Text, "instructions", "instructions")            \
    X(CreatorEmail, "Xmp.iptc.CreatorContactInfo/Iptc4xmpCore:CiEmailWork", Contact,               \
      "creator-email", "creatorEmail")                                                             \
    X(CreatorPhone, "Xmp.iptc.CreatorContactInfo/Iptc4xmpCore:CiTelWork", Contact,                 \
      "creator-phone", "creatorPhone")                                                             \
    X(CreatorUrl, "Xmp.iptc.CreatorContactInfo/Iptc4xmpCore:CiUrlWork", Contact, "creator-url",    \
      "creatorUrl")                                                                                \
    X(CreatorCity, "Xmp.iptc.CreatorContactInfo/Iptc4xmpCore:CiAdrCity", Contact, "creator-city",  \
      "creatorCity")                                                                               \
    X(CreatorCountry, "Xmp.iptc.CreatorContactInfo/Iptc4xmpCore:CiAdrCtry", Contact,               \
      "creator-country", "creatorCountry")

enum class ExtraText {
#define TAGMOOR_EXTRA_ENUMERATOR(name, key, kind, option, json) name,
    TAGMOOR_EXTRA_TEXTS(TAGMOOR_EXTRA_ENUMERATOR)
#undef TAGMOOR_EXTRA_ENUMERATOR
};

struct ExtraTextRow {
    ExtraText text;
    const char* key;
    ExtraTextKind kind;
    const char* option;
    const char* jsonName;
};

inline constexpr std::array kExtraTextRows{
#define TAGMOOR_EXTRA_ROW(name, key, kind, option, json)                                           \
    ExtraTextRow{ExtraText::name, key, ExtraTextKind::kind, option, json},
    TAGMOOR_EXTRA_TEXTS(TAGMOOR_EXTRA_ROW)
#undef TAGMOOR_EXTRA_ROW
};
inline constexpr std::size_t kExtraTextCount = kExtraTextRows.size();

inline const ExtraTextRow& extraTextRow(ExtraText text) {
    return kExtraTextRows[std::size_t(text)];
}

// The structure that holds the creator's contact fields.
inline constexpr const char* kCreatorContactKey = "Xmp.iptc.CreatorContactInfo";

// A value per text of the table.
template <typename T> using PerExtraText = std::array<T, kExtraTextCount>;

// The lowest and highest rating; -1 marks a rejected photo, 0 an unrated one.
inline constexpr int kRejectedRating = -1;
inline constexpr int kHighestRating = 5;

// The zone of the dates a run writes. Their offsets, from the zone's rules on each date, go
// into OffsetTime, OffsetTimeOriginal and OffsetTimeDigitized and onto the XMP dates. With
// `movedFrom`, the photo's clock was set to that zone and its dates move to `zone` first (the
// local time of the place where it was taken).
struct DatesZone {
    // ICU zone IDs: "Europe/Lisbon", "GMT+05:45".
    QString zone;
    QString movedFrom;

    bool operator==(const DatesZone&) const = default;
};

// The offsets written beside the Exif dates, "+HH:MM"; unset leaves the tag alone.
struct ExifDateOffsets {
    std::optional<QString> modify;    // OffsetTime, of DateTime
    std::optional<QString> original;  // OffsetTimeOriginal
    std::optional<QString> digitized; // OffsetTimeDigitized

    bool any() const { return modify || original || digitized; }
    bool operator==(const ExifDateOffsets&) const = default;
};

// What a run does beyond the form's fields. Every member left unset leaves its tags alone.
struct ExtraEdits {
    // Keywords to add to and remove from each photo, its other keywords kept. A "|" makes a
    // keyword a path ("Places|Portugal|Lisbon").
    QStringList addKeywords;
    QStringList removeKeywords;
    // Stars from 0 to 5, or -1 for rejected.
    std::optional<int> rating;
    // One of the colour names of colourLabelNames(); the empty text removes the label.
    std::optional<QString> label;
    // The empty text removes the tag.
    PerExtraText<std::optional<QString>> texts;
    // The people shown; an empty list removes the tag.
    std::optional<QStringList> persons;
    // Whether an edit of a caption, creator, rights or location field writes all its copies;
    // unset, the process's switch decides in the standard form (copiesInStep(), off unless
    // set; the window sets it from its preference) and the described form writes no copies.
    std::optional<bool> syncCopies;
    // The moment a position was taken, in UTC: GPSDateStamp and GPSTimeStamp (a photo placed
    // on a GPS track gets the moment of its place).
    std::optional<QDateTime> gpsTime;
    // The zone of the dates the run writes; the offsets are worked out per photo from it.
    std::optional<DatesZone> datesZone;
    ExifDateOffsets dateOffsets;

    bool syncsCopies() const;
    // Whether anything beyond the form's fields is to be written.
    bool writesTags() const;

    bool operator==(const ExtraEdits&) const = default;
};

// The percentage that goes with a star rating in Exif.Image.RatingPercent, as Windows writes
// it: 0, 1, 25, 50, 75, 99 for 0 to 5 stars.
int ratingPercent(int stars);

// The colour labels, in the names the photo programs write ("Red", "Yellow", "Green", "Blue",
// "Purple").
std::span<const QString> colourLabelNames();
// The label's name as written, whatever the case of `typed`; nothing for a text that names no
// colour. The empty text stays empty (no label).
std::optional<QString> colourLabelOf(const QString& typed);

// Why `edits` cannot be written, or an empty text: a rating outside -1..5, a label that names
// no colour, a keyword that is empty or has an empty level, a keyword too long for IPTC.
QString extraEditsRefusal(const ExtraEdits& edits);

} // namespace tagmoor
