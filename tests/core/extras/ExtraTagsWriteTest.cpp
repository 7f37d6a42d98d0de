// The edits beyond the form, written by the command line and read back by exiftool.
#include "../metadata/WriteSupport.h"

#include <QJsonArray>
#include <QRegularExpression>

namespace tagmoor::test {
namespace {

ToolResult apply(const QStringList& args) {
    return runTool(QStringLiteral(TAGMOOR_CLI),
                   QStringList{QStringLiteral("apply"), QStringLiteral("--in-place"),
                               QStringLiteral("--quiet")} +
                       args);
}

// A tag's value as a list of texts: exiftool gives one value as itself, several as an array.
QStringList listOf(const QJsonObject& tags, const QString& name) {
    const QJsonValue v = tags.value(name);
    QStringList items;
    if (v.isArray()) {
        for (const QJsonValue& item : v.toArray())
            items << item.toVariant().toString();
    } else if (!v.isUndefined()) {
        items << v.toVariant().toString();
    }
    return items;
}

QString textOf(const QJsonObject& tags, const QString& name) {
    return tags.value(name).toVariant().toString();
}

// The tags minus those the edit may change: the edited ones, the file's own data, the marks a
// writer leaves (toolkit, digest, the character set declaration), where the data blocks lie,
// and the picture tags that Exiv2 leaves out of a JPEG's first directory whenever it lays the
// Exif block out (ExifParser::encode in exif.cpp; a one-field edit loses them the same way).
QJsonObject untouched(QJsonObject tags, const QRegularExpression& edited, bool jpeg) {
    if (jpeg)
        tags.remove(QStringLiteral("IFD0:PhotometricInterpretation"));
    static const QRegularExpression volatileTags(QStringLiteral(
        "^(SourceFile|System:.*|File:.*|ExifTool:.*|Composite:.*|XMP-x:XMPToolkit|"
        "Photoshop:IPTCDigest|IPTC:CodedCharacterSet|IPTC:EnvelopeRecordVersion|.*Offsets?)$"));
    for (const QString& key : tags.keys())
        if (edited.match(key).hasMatch() || volatileTags.match(key).hasMatch())
            tags.remove(key);
    return tags;
}

// The tags that differ between two readings, one "name: before -> after" a line.
std::string differences(const QJsonObject& before, const QJsonObject& after) {
    QStringList keys = before.keys() + after.keys();
    keys.removeDuplicates();
    QStringList lines;
    for (const QString& key : keys) {
        if (before.value(key) != after.value(key))
            lines
                << key + QStringLiteral(": ") +
                       QJsonDocument(QJsonArray{before.value(key)}).toJson(QJsonDocument::Compact) +
                       QStringLiteral(" -> ") +
                       QJsonDocument(QJsonArray{after.value(key)}).toJson(QJsonDocument::Compact);
    }
    return lines.join(QLatin1Char('\n')).toStdString();
}

class ExtraTagsWriteTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!haveTool(QStringLiteral("exiftool")))
            GTEST_SKIP() << "exiftool is not installed";
        ASSERT_TRUE(m_dir.isValid());
    }
    QString copy(const QString& name, const QString& newName = {}) {
        return copySample(formatsDir() + QLatin1Char('/') + name, m_dir.path(), newName);
    }
    QTemporaryDir m_dir;
};

// Every new tag lands under the group and name other programs read, on a JPEG and a TIFF, and
// every tag the edit did not name stays as it was, the photo's other keywords included.
TEST_F(ExtraTagsWriteTest, EachNewTagReadsBackAndTheRestStays) {
    ValueFormScope scope(ValueForm::standard);
    const QStringList photos{copy(QStringLiteral("Reagan.jpg")),
                             copy(QStringLiteral("Reagan.tiff"))};
    const QMap<QString, QJsonObject> before = exiftoolTagsOf(photos);
    const ToolResult r = apply(
        QStringList{QStringLiteral("--add-keyword"),     QStringLiteral("Places|Portugal|Lisbon"),
                    QStringLiteral("--add-keyword"),     QStringLiteral("boat"),
                    QStringLiteral("--remove-keyword"),  QStringLiteral("magellan"),
                    QStringLiteral("--rating"),          QStringLiteral("4"),
                    QStringLiteral("--label"),           QStringLiteral("purple"),
                    QStringLiteral("--alt-text"),        QStringLiteral("A carrier at sea"),
                    QStringLiteral("--ext-description"), QStringLiteral("The carrier sails south"),
                    QStringLiteral("--person"),          QStringLiteral("Ann Lee"),
                    QStringLiteral("--person"),          QStringLiteral("Bo Yin"),
                    QStringLiteral("--event"),           QStringLiteral("Transit"),
                    QStringLiteral("--usage-terms"),     QStringLiteral("No reuse"),
                    QStringLiteral("--credit-line"),     QStringLiteral("US Navy"),
                    QStringLiteral("--instructions"),    QStringLiteral("Embargo"),
                    QStringLiteral("--creator-email"),   QStringLiteral("a@navy.mil"),
                    QStringLiteral("--creator-phone"),   QStringLiteral("+1 555"),
                    QStringLiteral("--creator-url"),     QStringLiteral("https://navy.mil"),
                    QStringLiteral("--creator-city"),    QStringLiteral("San Diego"),
                    QStringLiteral("--creator-country"), QStringLiteral("USA")} +
        photos);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QMap<QString, QJsonObject> after = exiftoolTagsOf(photos);
    for (const QString& photo : photos) {
        SCOPED_TRACE(photo.toStdString());
        const QJsonObject& t = after[photo];
        QStringList keywords = listOf(before[photo], QStringLiteral("IPTC:Keywords"));
        ASSERT_TRUE(keywords.removeOne(QStringLiteral("magellan")));
        keywords << QStringLiteral("Lisbon") << QStringLiteral("boat");
        EXPECT_EQ(listOf(t, QStringLiteral("IPTC:Keywords")), keywords);
        EXPECT_EQ(listOf(t, QStringLiteral("XMP-dc:Subject")), keywords);
        EXPECT_EQ(listOf(t, QStringLiteral("XMP-lr:HierarchicalSubject")),
                  QStringList{QStringLiteral("Places|Portugal|Lisbon")});
        EXPECT_EQ(listOf(t, QStringLiteral("XMP-digiKam:TagsList")),
                  QStringList{QStringLiteral("Places/Portugal/Lisbon")});
        EXPECT_EQ(t.value(QStringLiteral("XMP-xmp:Rating")).toInt(), 4);
        EXPECT_EQ(t.value(QStringLiteral("IFD0:Rating")).toInt(), 4);
        EXPECT_EQ(t.value(QStringLiteral("IFD0:RatingPercent")).toInt(), 75);
        EXPECT_EQ(textOf(t, QStringLiteral("XMP-xmp:Label")), QStringLiteral("Purple"));
        EXPECT_EQ(textOf(t, QStringLiteral("XMP-iptcCore:AltTextAccessibility")),
                  QStringLiteral("A carrier at sea"));
        EXPECT_EQ(textOf(t, QStringLiteral("XMP-iptcCore:ExtDescrAccessibility")),
                  QStringLiteral("The carrier sails south"));
        EXPECT_EQ(listOf(t, QStringLiteral("XMP-iptcExt:PersonInImage")),
                  (QStringList{QStringLiteral("Ann Lee"), QStringLiteral("Bo Yin")}));
        EXPECT_EQ(textOf(t, QStringLiteral("XMP-iptcExt:Event")), QStringLiteral("Transit"));
        EXPECT_EQ(textOf(t, QStringLiteral("XMP-xmpRights:UsageTerms")),
                  QStringLiteral("No reuse"));
        EXPECT_EQ(textOf(t, QStringLiteral("XMP-photoshop:Credit")), QStringLiteral("US Navy"));
        EXPECT_EQ(textOf(t, QStringLiteral("XMP-photoshop:Instructions")),
                  QStringLiteral("Embargo"));
        EXPECT_EQ(textOf(t, QStringLiteral("XMP-iptcCore:CreatorWorkEmail")),
                  QStringLiteral("a@navy.mil"));
        EXPECT_EQ(textOf(t, QStringLiteral("XMP-iptcCore:CreatorWorkTelephone")),
                  QStringLiteral("+1 555"));
        EXPECT_EQ(textOf(t, QStringLiteral("XMP-iptcCore:CreatorWorkURL")),
                  QStringLiteral("https://navy.mil"));
        EXPECT_EQ(textOf(t, QStringLiteral("XMP-iptcCore:CreatorCity")),
                  QStringLiteral("San Diego"));
        EXPECT_EQ(textOf(t, QStringLiteral("XMP-iptcCore:CreatorCountry")), QStringLiteral("USA"));
        // The language alternatives hold their text as the x-default item.
        EXPECT_EQ(exiv2Value(photo, QStringLiteral("Xmp.iptc.AltTextAccessibility")),
                  QStringLiteral("lang=\"x-default\" A carrier at sea"));
        EXPECT_EQ(exiv2Value(photo, QStringLiteral("Xmp.iptcExt.Event")),
                  QStringLiteral("lang=\"x-default\" Transit"));

        const bool jpeg = photo.endsWith(QLatin1String(".jpg"));
        static const QRegularExpression edited(QStringLiteral(
            "^(IPTC:Keywords|XMP-dc:Subject|XMP-lr:.*|XMP-digiKam:.*|XMP-xmp:(Rating|Label)|"
            "IFD0:Rating.*|XMP-iptcCore:.*|XMP-iptcExt:.*|XMP-xmpRights:UsageTerms|"
            "XMP-photoshop:(Credit|Instructions))$"));
        EXPECT_EQ(differences(untouched(before[photo], edited, jpeg),
                              untouched(after[photo], edited, jpeg)),
                  "");
    }

    // The command line reads the values back.
    const ToolResult read =
        runTool(QStringLiteral(TAGMOOR_CLI), {QStringLiteral("read"), photos.first()});
    const QJsonObject extras =
        QJsonDocument::fromJson(read.out).object().value(QStringLiteral("extras")).toObject();
    EXPECT_EQ(extras.value(QStringLiteral("rating")).toInt(), 4);
    EXPECT_EQ(extras.value(QStringLiteral("label")).toString(), QStringLiteral("Purple"));
    EXPECT_EQ(extras.value(QStringLiteral("creatorCity")).toString(), QStringLiteral("San Diego"));
    EXPECT_TRUE(extras.value(QStringLiteral("keywords"))
                    .toArray()
                    .contains(QStringLiteral("Places|Portugal|Lisbon")));
}

// Removing a path takes it from both path lists and its leaf from both flat lists; a rejected
// photo has no Exif rating; an empty text removes its tag.
TEST_F(ExtraTagsWriteTest, RemovalsUndoWhatWasWritten) {
    ValueFormScope scope(ValueForm::standard);
    const QString photo = copy(QStringLiteral("Reagan.jpg"));
    ASSERT_EQ(
        apply({QStringLiteral("--add-keyword"), QStringLiteral("Places|Lisbon"),
               QStringLiteral("--rating"), QStringLiteral("5"), QStringLiteral("--event"),
               QStringLiteral("Transit"), QStringLiteral("--creator-email"),
               QStringLiteral("a@b.c"), QStringLiteral("--person"), QStringLiteral("Ann"), photo})
            .exitCode,
        0);
    const ToolResult r =
        apply({QStringLiteral("--remove-keyword"), QStringLiteral("Places|Lisbon"),
               QStringLiteral("--rating"), QStringLiteral("-1"), QStringLiteral("--event"),
               QString(), QStringLiteral("--creator-email"), QString(), QStringLiteral("--person"),
               QString(), photo});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject t = exiftoolTags(photo);
    EXPECT_FALSE(t.contains(QStringLiteral("XMP-lr:HierarchicalSubject")));
    EXPECT_FALSE(t.contains(QStringLiteral("XMP-digiKam:TagsList")));
    EXPECT_FALSE(listOf(t, QStringLiteral("IPTC:Keywords")).contains(QStringLiteral("Lisbon")));
    EXPECT_FALSE(listOf(t, QStringLiteral("XMP-dc:Subject")).contains(QStringLiteral("Lisbon")));
    EXPECT_TRUE(listOf(t, QStringLiteral("IPTC:Keywords")).contains(QStringLiteral("magellan")));
    EXPECT_EQ(t.value(QStringLiteral("XMP-xmp:Rating")).toInt(), -1);
    EXPECT_FALSE(t.contains(QStringLiteral("IFD0:Rating")));
    EXPECT_FALSE(t.contains(QStringLiteral("IFD0:RatingPercent")));
    EXPECT_FALSE(t.contains(QStringLiteral("XMP-iptcExt:Event")));
    EXPECT_FALSE(t.contains(QStringLiteral("XMP-iptcCore:CreatorWorkEmail")));
    EXPECT_FALSE(t.contains(QStringLiteral("XMP-iptcExt:PersonInImage")));
}

// With the copies in step an edited caption, creator, rights or location field writes all its
// copies, in either form; without, only the tag of the field given changes. Reading in step
// shows the copy a reader prefers in every field of its group.
TEST_F(ExtraTagsWriteTest, CopiesFollowTheirFieldWhereTheFormOrTheOptionSaysSo) {
    QStringList sets;
    for (const char* set : {"ImageDescription=New caption", "Artist=Ann Lee; Bo Yin",
                            "CopyrightNotice=(c) Navy", "City=Lisbon", "ProvinceState=Lisboa",
                            "CountryPrimaryLocationName=Portugal", "SubLocation=Belém"})
        sets << QStringLiteral("--set") << QString::fromUtf8(set);
    // The copies that follow the edited fields, with the values they take.
    const QList<QPair<QString, QStringList>> copies{
        {QStringLiteral("XMP-dc:Description"), {QStringLiteral("New caption")}},
        {QStringLiteral("IPTC:Caption-Abstract"), {QStringLiteral("New caption")}},
        {QStringLiteral("XMP-dc:Creator"), {QStringLiteral("Ann Lee"), QStringLiteral("Bo Yin")}},
        {QStringLiteral("IPTC:By-line"), {QStringLiteral("Ann Lee; Bo Yin")}},
        {QStringLiteral("IFD0:Copyright"), {QStringLiteral("(c) Navy")}},
        {QStringLiteral("XMP-dc:Rights"), {QStringLiteral("(c) Navy")}},
        {QStringLiteral("XMP-photoshop:City"), {QStringLiteral("Lisbon")}},
        {QStringLiteral("XMP-photoshop:State"), {QStringLiteral("Lisboa")}},
        {QStringLiteral("XMP-photoshop:Country"), {QStringLiteral("Portugal")}},
        {QStringLiteral("XMP-iptcCore:Location"), {QStringLiteral("Belém")}},
    };
    const auto synced = [&](const QJsonObject& t) {
        QStringList followed;
        for (const auto& [tag, value] : copies)
            if (listOf(t, tag) == value)
                followed << tag;
        return followed;
    };
    struct Case {
        ValueForm form;
        QStringList option;
        bool syncs;
    };
    const QStringList on{QStringLiteral("--sync-copies"), QStringLiteral("on")};
    const QStringList off{QStringLiteral("--sync-copies"), QStringLiteral("off")};
    QString unsynced;
    for (const Case& c :
         {Case{ValueForm::standard, {}, false}, Case{ValueForm::standard, on, true},
          Case{ValueForm::described, off, false}, Case{ValueForm::described, on, true}}) {
        ValueFormScope scope(c.form);
        SCOPED_TRACE((valueFormName(c.form) + c.option.join(QLatin1Char(' '))).toStdString());
        const QString photo =
            copy(QStringLiteral("Reagan.jpg"),
                 valueFormName(c.form) + c.option.join(QString()) + QStringLiteral(".jpg"));
        const QJsonObject before = exiftoolTags(photo);
        const ToolResult r = apply(sets + c.option + QStringList{photo});
        ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
        const QJsonObject t = exiftoolTags(photo);
        EXPECT_EQ(textOf(t, QStringLiteral("IFD0:ImageDescription")),
                  QStringLiteral("New caption"));
        EXPECT_EQ(synced(t).size(), c.syncs ? copies.size() : 0)
            << synced(t).join(' ').toStdString();
        if (c.form == ValueForm::standard && !c.syncs)
            unsynced = photo;
        if (!c.syncs) {
            EXPECT_EQ(t.value(QStringLiteral("XMP-dc:Description")),
                      before.value(QStringLiteral("XMP-dc:Description")));
        }
    }
    ValueFormScope scope(ValueForm::standard);
    const auto caption = [&](const QStringList& options) {
        const ToolResult r =
            runTool(QStringLiteral(TAGMOOR_CLI),
                    QStringList{QStringLiteral("read")} + options + QStringList{unsynced});
        return QJsonDocument::fromJson(r.out)
            .object()
            .value(QStringLiteral("iptcProperties.captionAbstract"))
            .toObject()
            .value(QStringLiteral("value"))
            .toString();
    };
    EXPECT_EQ(caption({QStringLiteral("--sync-copies"), QStringLiteral("on")}),
              QStringLiteral("New caption"));
    EXPECT_NE(caption({}), QStringLiteral("New caption"));
}

TEST_F(ExtraTagsWriteTest, BadValuesAreRefusedBeforeAnythingIsWritten) {
    const QString photo = copy(QStringLiteral("Reagan.jpg"));
    const QByteArray bytes = readBytes(photo);
    for (const QStringList& args :
         {QStringList{QStringLiteral("--rating"), QStringLiteral("6")},
          QStringList{QStringLiteral("--label"), QStringLiteral("Orange")},
          QStringList{QStringLiteral("--add-keyword"), QStringLiteral("Places||Lisbon")},
          QStringList{QStringLiteral("--sync-copies"), QStringLiteral("yes")},
          QStringList{QStringLiteral("--mode"), QStringLiteral("remove"), QStringLiteral("--strip"),
                      QStringLiteral("xmp"), QStringLiteral("--rating"), QStringLiteral("2")}}) {
        const ToolResult r = apply(args + QStringList{photo});
        EXPECT_EQ(r.exitCode, 2) << args.join(QLatin1Char(' ')).toStdString();
    }
    EXPECT_EQ(readBytes(photo), bytes);
    const ToolResult help =
        runTool(QStringLiteral(TAGMOOR_CLI), {QStringLiteral("apply"), QStringLiteral("--help")});
    for (const char* option : {"--add-keyword", "--remove-keyword", "--rating", "--label",
                               "--alt-text", "--person", "--creator-email", "--sync-copies"})
        EXPECT_TRUE(help.out.contains(option)) << option;
}

} // namespace
} // namespace tagmoor::test
