#include "exchange/CsvTable.h"
#include "exchange/CsvColumns.h"

#include <QSet>

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

TEST(CsvTable, CellsSurviveTheirWayThroughText) {
    CsvTable table;
    table.header = {QStringLiteral("SourceFile"), QStringLiteral("Artist"),
                    QStringLiteral("Caption-Abstract")};
    table.rows << QStringList{QStringLiteral("/p/a b.jpg"), QStringLiteral("Jane \"JD\" Doe"),
                              QStringLiteral("line one\nline two, and more")};
    table.rows << QStringList{QStringLiteral("/p/c.jpg"), QStringLiteral(" padded "), QString()};
    const QByteArray text = table.toText();
    // Quoted only where needed, as the metadata tools quote.
    EXPECT_TRUE(text.startsWith("SourceFile,Artist,Caption-Abstract\n/p/a b.jpg,\"Jane \"\"JD\"\" "
                                "Doe\",\"line one\nline two, and more\"\n"));
    EXPECT_TRUE(text.endsWith("/p/c.jpg,\" padded \",\n"));

    QString error;
    const auto back = CsvTable::parse(text, &error);
    ASSERT_TRUE(back) << error.toStdString();
    EXPECT_EQ(back->header, table.header);
    EXPECT_EQ(back->rows, table.rows);
}

TEST(CsvTable, ReadsWhatSpreadsheetsWrite) {
    QString error;
    // A byte order mark, CRLF lines, blanks around unquoted cells, a short row, a blank line,
    // and a trailing comma on the header.
    const auto t = CsvTable::parse("\xEF\xBB\xBFSourceFile,Artist,City,\r\n"
                                   "a.jpg , Jane ,\"Paris\"\r\n"
                                   "\r\n"
                                   "b.jpg\r\n",
                                   &error);
    ASSERT_TRUE(t) << error.toStdString();
    EXPECT_EQ(t->header, (QStringList{"SourceFile", "Artist", "City"}));
    ASSERT_EQ(t->rows.size(), 2);
    EXPECT_EQ(t->rows[0], (QStringList{"a.jpg", "Jane", "Paris"}));
    EXPECT_EQ(t->rows[1], (QStringList{"b.jpg", "", ""}));

    EXPECT_FALSE(CsvTable::parse("", &error));
    EXPECT_FALSE(error.isEmpty());
}

TEST(CsvColumns, EveryFieldHasItsOwnColumnAndHeadingsFindThem) {
    QSet<QString> names;
    for (const Field field : allFields) {
        const QString name = CsvColumns::nameOf(field);
        EXPECT_FALSE(names.contains(name.toLower())) << name.toStdString();
        names.insert(name.toLower());
        EXPECT_EQ(CsvColumns::fieldOf(name), field) << name.toStdString();
    }
    // A name shared by an EXIF and an XMP tag is the EXIF tag unless an XMP group is named.
    EXPECT_EQ(CsvColumns::fieldOf("CreateDate"), Field::CreationDate);
    EXPECT_EQ(CsvColumns::fieldOf("EXIF:CreateDate"), Field::CreationDate);
    EXPECT_EQ(CsvColumns::fieldOf("XMP:CreateDate"), Field::CreateDateXMP);
    EXPECT_EQ(CsvColumns::fieldOf("SerialNumber"), Field::SerialNumber);
    EXPECT_EQ(CsvColumns::fieldOf("xmp-aux:serialnumber"), Field::SerialNumberXMP);
    // Groups, case and the mark of a number column do not matter otherwise.
    EXPECT_EQ(CsvColumns::fieldOf("IPTC:caption-abstract"), Field::CaptionAbstract);
    EXPECT_EQ(CsvColumns::fieldOf("Orientation#"), Field::Orientation);
    EXPECT_EQ(CsvColumns::fieldOf("FileName"), std::nullopt);
    EXPECT_EQ(CsvColumns::fieldOf("Subject"), std::nullopt);
}

} // namespace
} // namespace tagmoor
