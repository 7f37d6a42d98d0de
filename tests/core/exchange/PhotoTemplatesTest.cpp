#include "TestSupport.h"

#include "exchange/PhotoTemplates.h"
#include "foundation/ValueForm.h"
#include "metadata/PropertyLoading.h"

#include <QTemporaryDir>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

TEST(PhotoTemplates, FillsTheKnownPlaceholdersAndKeepsTheRest) {
    const PhotoTemplates::Photo photo{"IMG_7.jpg", QDateTime(QDate(2021, 3, 4), QTime(5, 6, 7)), 7,
                                      "Canon EOS 5D"};
    const std::pair<QString, QString> cases[] = {
        {"{filename}", "IMG_7.jpg"},
        {"{date:yyyy-MM-dd HH:mm}", "2021-03-04 05:06"},
        {"{date:yyyy}/{counter:3}", "2021/007"},
        {"#{counter}", "#7"},
        {"by {camera}", "by Canon EOS 5D"},
        {"{{filename}}", "{IMG_7.jpg}"},
        // Unknown names, and known ones with a wrong argument, stay as typed.
        {"{nope} {date} {counter:x} {filename:1} {Filename}", "{nope} {date} {counter:x} "
                                                              "{filename:1} {Filename}"},
        {"no braces", "no braces"},
    };
    for (const auto& [text, filled] : cases)
        EXPECT_EQ(PhotoTemplates::fill(text, photo), filled) << text.toStdString();
    EXPECT_TRUE(PhotoTemplates::holdsPlaceholder("a {counter} b"));
    EXPECT_FALSE(PhotoTemplates::holdsPlaceholder("a {nope} b"));

    // A photo without a date gives no date; one of over 999 keeps all its digits.
    const PhotoTemplates::Photo bare{"a.jpg", std::nullopt, 1234, ""};
    EXPECT_EQ(PhotoTemplates::fill("[{date:yyyy}][{counter:2}][{camera}]", bare), "[][1234][]");
}

ToolResult cliIn(const QString& folder, const QStringList& args) {
    QProcess p;
    p.setWorkingDirectory(folder);
    p.start(TAGMOOR_CLI, cliArgs(args));
    return finishTool(p);
}

QString artistOf(const QString& path) {
    const auto record = loadImageProperties(QUrl::fromLocalFile(path));
    return record ? record->tiffProperties->artist.text().value_or("(none)") : "(no record)";
}

TEST(PhotoTemplates, ARunFillsThemInPerPhotoInTheStandardFormOnly) {
    QTemporaryDir tmp;
    const QStringList names{"et-GPS.jpg", "Reagan.jpg", "et-IPTC.jpg"};
    QStringList photos;
    for (const QString& name : names)
        photos << copySample(formatsDir() + "/" + name, tmp.path());
    // et-IPTC.jpg has no capture date: its file's time stands in.
    const QDateTime fileTime(QDate(2011, 2, 3), QTime(4, 5, 6));
    QFile stamped(photos[2]);
    ASSERT_TRUE(stamped.open(QIODevice::ReadWrite));
    ASSERT_TRUE(stamped.setFileTime(fileTime, QFileDevice::FileModificationTime));
    stamped.close();
    const QStringList run = QStringList{"apply", "--in-place",
                                        "--set", "Artist={counter:2} {filename} {date:yyyy}",
                                        "--set", "ImageDescription={camera}|{nope}"} +
                            photos;
    {
        ValueFormScope scope(ValueForm::standard);
        const ToolResult plan = cliIn(tmp.path(), QStringList(run) << "--dry-run");
        EXPECT_TRUE(plan.out.contains("Exif.Image.Artist = \"02 Reagan.jpg 2004\""))
            << plan.out.toStdString();

        const ToolResult r = cliIn(tmp.path(), run);
        ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
        EXPECT_EQ(artistOf(photos[0]), "01 et-GPS.jpg 2002");
        EXPECT_EQ(artistOf(photos[1]), "02 Reagan.jpg 2004");
        EXPECT_EQ(artistOf(photos[2]), "03 et-IPTC.jpg 2011");
        const auto gps = loadImageProperties(QUrl::fromLocalFile(photos[0]));
        EXPECT_EQ(gps->tiffProperties->imageDescription.text(), "FUJIFILM FinePixS1Pro|{nope}");
    }
    {
        ValueFormScope scope(ValueForm::described);
        const ToolResult r = cliIn(tmp.path(), run);
        ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
        for (const QString& photo : photos)
            EXPECT_EQ(artistOf(photo), "{counter:2} {filename} {date:yyyy}");
    }
}

} // namespace
