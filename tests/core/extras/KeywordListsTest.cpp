#include "extras/KeywordLists.h"
#include "extras/CopyGroups.h"
#include "extras/ExtraEdits.h"
#include "extras/ExtraValues.h"

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

QStringList L(std::initializer_list<const char*> items) {
    QStringList list;
    for (const char* item : items)
        list << QString::fromUtf8(item);
    return list;
}

TEST(KeywordListsTest, AddingAndRemovingKeepsTheOtherKeywords) {
    KeywordLists photo{L({"sea", "ship"}), L({"sea", "ship", "navy"}), {}, {}};
    const KeywordLists edited = withKeywordEdits(photo, L({"carrier", "sea"}), L({"ship"}));
    EXPECT_EQ(edited.iptc, L({"sea", "carrier"}));
    EXPECT_EQ(edited.subject, L({"sea", "navy", "carrier"}));
    EXPECT_TRUE(edited.hierarchical.isEmpty());
    EXPECT_TRUE(edited.tagsList.isEmpty());
    // Removing a keyword the photo lacks changes nothing.
    EXPECT_EQ(withKeywordEdits(photo, {}, L({"absent"})), photo);
}

TEST(KeywordListsTest, APathGoesToAllFourPlacesAndItsLeafStaysWhileAnotherPathEndsInIt) {
    const KeywordLists added =
        withKeywordEdits({L({"old"}), L({"old"}), {}, L({"People/Ann"})},
                         L({" Places | Portugal | Lisbon ", "Trips|Lisbon"}), {});
    EXPECT_EQ(added.hierarchical, L({"Places|Portugal|Lisbon", "Trips|Lisbon"}));
    EXPECT_EQ(added.tagsList, L({"People/Ann", "Places/Portugal/Lisbon", "Trips/Lisbon"}));
    EXPECT_EQ(added.iptc, L({"old", "Lisbon"}));
    EXPECT_EQ(added.subject, L({"old", "Lisbon"}));

    // One of two paths to the same leaf goes: the leaf stays for the other.
    const KeywordLists one = withKeywordEdits(added, {}, L({"Places|Portugal|Lisbon"}));
    EXPECT_EQ(one.hierarchical, L({"Trips|Lisbon"}));
    EXPECT_EQ(one.tagsList, L({"People/Ann", "Trips/Lisbon"}));
    EXPECT_EQ(one.iptc, L({"old", "Lisbon"}));

    // The last one goes: so does its leaf, and a path only digiKam holds still counts.
    const KeywordLists none = withKeywordEdits(one, {}, L({"Trips|Lisbon"}));
    EXPECT_EQ(none.iptc, L({"old"}));
    EXPECT_EQ(none.subject, L({"old"}));
    EXPECT_EQ(none.tagsList, L({"People/Ann"}));
    const KeywordLists ann =
        withKeywordEdits({L({"Ann"}), L({"Ann"}), L({"Friends|Ann"}), {}}, {}, L({"Friends|Ann"}));
    EXPECT_TRUE(ann.iptc.isEmpty());
    const KeywordLists kept = withKeywordEdits(
        {L({"Ann"}), L({"Ann"}), L({"Friends|Ann"}), L({"People/Ann"})}, {}, L({"Friends|Ann"}));
    EXPECT_EQ(kept.iptc, L({"Ann"}));
}

TEST(KeywordListsTest, CountsAndCompletionsOfASelection) {
    ExtraValues a;
    a.keywords = {L({"sea", "Lisbon"}), L({"sea"}), L({"Places|Portugal|Lisbon"}), {}};
    ExtraValues b;
    b.keywords = {L({"Sea"}), {}, {}, L({"Places/Portugal/Lisbon"})};
    ExtraValues c;
    c.keywords = {L({"sea"}), L({"sea"}), {}, {}};
    // A leaf shown by its path is not shown again on its own.
    EXPECT_EQ(a.shownKeywords(), L({"Places|Portugal|Lisbon", "sea"}));

    const std::vector<ExtraValues> photos{a, b, c};
    const std::vector<KeywordCount> counts = keywordCounts(photos);
    const std::vector<KeywordCount> expected{
        {QStringLiteral("Places|Portugal|Lisbon"), 2},
        {QStringLiteral("Sea"), 1},
        {QStringLiteral("sea"), 2},
    };
    EXPECT_EQ(counts, expected);
    EXPECT_EQ(keywordCompletions(counts),
              L({"Places", "Places|Portugal", "Places|Portugal|Lisbon", "Sea", "sea"}));
}

TEST(ExtraEditsTest, RatingLabelAndKeywordChecks) {
    EXPECT_EQ(ratingPercent(0), 0);
    EXPECT_EQ(ratingPercent(1), 1);
    EXPECT_EQ(ratingPercent(3), 50);
    EXPECT_EQ(ratingPercent(5), 99);
    EXPECT_EQ(colourLabelOf(QStringLiteral(" purple")), QStringLiteral("Purple"));
    EXPECT_EQ(colourLabelOf(QString()), QString());
    EXPECT_FALSE(colourLabelOf(QStringLiteral("Orange")));

    ExtraEdits edits;
    EXPECT_FALSE(edits.writesTags());
    edits.syncCopies = true; // a setting, not a tag
    EXPECT_FALSE(edits.writesTags());
    edits.rating = -1;
    EXPECT_TRUE(edits.writesTags());
    EXPECT_TRUE(extraEditsRefusal(edits).isEmpty());
    edits.rating = 6;
    EXPECT_FALSE(extraEditsRefusal(edits).isEmpty());
    edits.rating.reset();
    edits.label = QStringLiteral("Orange");
    EXPECT_FALSE(extraEditsRefusal(edits).isEmpty());
    edits.label.reset();
    // Empty, an empty level, a leaf over IPTC's 64 bytes.
    const char* tooLong =
        "Places|01234567890123456789012345678901234567890123456789012345678901234";
    for (const char* bad : {"", "Places||Lisbon", "a|", tooLong}) {
        edits.addKeywords = {QString::fromUtf8(bad)};
        EXPECT_FALSE(extraEditsRefusal(edits).isEmpty()) << bad;
    }
    // A long path whose leaf fits IPTC is fine.
    edits.addKeywords = {QString(70, QLatin1Char('x')) + QStringLiteral("|leaf")};
    EXPECT_TRUE(extraEditsRefusal(edits).isEmpty());
}

TEST(CopyGroupsTest, AnEditFillsTheOtherCopiesOfItsGroupOnly) {
    const std::vector<CopyWrite> writes = copyWritesFor({
        {QStringLiteral("Iptc.Application2.Caption"), QStringLiteral("A ship")},
        {QStringLiteral("Iptc.Application2.City"), QString()},
        {QStringLiteral("Exif.Image.Make"), QStringLiteral("not in a group")},
    });
    ASSERT_EQ(writes.size(), 3u);
    EXPECT_STREQ(writes[0].copy.key, "Exif.Image.ImageDescription");
    EXPECT_STREQ(writes[1].copy.key, "Xmp.dc.description");
    EXPECT_EQ(writes[1].copy.form, CopyForm::LangAlt);
    EXPECT_EQ(writes[1].text, QStringLiteral("A ship"));
    EXPECT_STREQ(writes[2].copy.key, "Xmp.photoshop.City");
    EXPECT_TRUE(writes[2].text.isEmpty());

    // Two copies edited: the one a reader prefers gives the others' value, and neither
    // edited copy is overwritten.
    const std::vector<CopyWrite> both = copyWritesFor({
        {QStringLiteral("Iptc.Application2.Byline"), QStringLiteral("IPTC name")},
        {QStringLiteral("Exif.Image.Artist"), QStringLiteral("Exif name")},
    });
    ASSERT_EQ(both.size(), 1u);
    EXPECT_STREQ(both[0].copy.key, "Xmp.dc.creator");
    EXPECT_EQ(both[0].text, QStringLiteral("Exif name"));

    // An IPTC copy holds what its dataset can, cut between characters; the others all of it.
    const QString name = QString(30, QLatin1Char('x')) + QStringLiteral("éé");
    const std::vector<CopyWrite> fitted =
        copyWritesFor({{QStringLiteral("Exif.Image.Artist"), name}});
    ASSERT_EQ(fitted.size(), 2u);
    EXPECT_EQ(fitted[0].text, name);
    EXPECT_EQ(fitted[1].text, QString(30, QLatin1Char('x')) + QStringLiteral("é"));
    EXPECT_EQ(fittedToBytes(QStringLiteral("ab😀"), 5), QStringLiteral("ab"));
}

} // namespace
} // namespace tagmoor
