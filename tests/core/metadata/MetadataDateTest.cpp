#include "metadata/PropertyLoading.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>
#include <unicode/parsepos.h>
#include <unicode/smpdtfmt.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace tagmoor {
namespace {

// Tests run in UTC with the en_US locale (see main.cpp).
QString iso(const std::optional<QDateTime>& d) {
    return d ? d->toUTC().toString(Qt::ISODateWithMs) : QStringLiteral("none");
}

TEST(MetadataDate, EachPatternParsesItsOwnForm) {
    struct Case {
        const char* text;
        const char* expected;
    };
    const Case cases[] = {
        {"2019-05-01 10:20:30", "2019-05-01T10:20:30.000Z"}, // 12-hour form first
        {"2019-05-01 22:20:30", "2019-05-01T22:20:30.000Z"}, // then the 24-hour one
        {"2019-05-01T10:20:30+0200", "2019-05-01T08:20:30.000Z"},
        {"Wednesday, May 1, 2019", "2019-05-01T00:00:00.000Z"},
        {"05/01/2019", "2019-05-01T00:00:00.000Z"},
        {"05-01-2019 10:20", "2019-05-01T10:20:00.000Z"},
        {"May 2019", "2019-05-01T00:00:00.000Z"},
        {"May 1, 2019", "2019-05-01T00:00:00.000Z"},
        {"Wed, 1 May 2019 10:20:30 +0000", "2019-05-01T10:20:30.000Z"},
        {"01.05.19", "2019-05-01T00:00:00.000Z"},
        {"10:20:30.250", "1970-01-01T10:20:30.250Z"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(iso(parseMetadataDate(QString::fromLatin1(c.text))), QLatin1String(c.expected))
            << c.text;
    // No year: the pattern "MMM d, h:mm a" lands in 1970.
    EXPECT_EQ(iso(parseMetadataDate("May 1, 3:04 PM")), QStringLiteral("1970-05-01T15:04:00.000Z"));
}

TEST(MetadataDate, ExifFormParsesThroughTheWeekYearPattern) {
    const auto d = parseMetadataDate(QStringLiteral("2019:05:01 10:20:30"));
    ASSERT_TRUE(d);
    EXPECT_EQ(iso(d), QStringLiteral("2019-05-01T10:20:30.000Z"));
}

TEST(MetadataDate, IncompleteOrLooseTextGivesNothing) {
    for (const char* text :
         {"", "2019:05:01 10:20", "2019:05:01 10:20:30 trailing", "2019-13-01 10:20:30",
          "2019-02-30 10:20:30", "yesterday", "2019-05-01"})
        EXPECT_FALSE(parseMetadataDate(QString::fromLatin1(text))) << text;
}

// The same rule with nothing cached and nothing skipped: a fresh ICU formatter per pattern.
std::optional<qint64> plainIcuParse(const QString& text) {
    const char16_t* patterns[] = {u"yyyy-MM-dd hh:mm:ss",
                                  u"yyyy-MM-dd HH:mm:ss",
                                  u"yyyy-MM-dd'T'HH:mm:ssZ",
                                  u"YYYY:MM:dd HH:mm:ss",
                                  u"EEEE, MMM d, yyyy",
                                  u"MM/dd/yyyy",
                                  u"MM-dd-yyyy HH:mm",
                                  u"MMM d, h:mm a",
                                  u"MMMM yyyy",
                                  u"MMM d, yyyy",
                                  u"E, d MMM yyyy HH:mm:ss Z",
                                  u"dd.MM.yy",
                                  u"HH:mm:ss.SSS"};
    static const auto formats = [&] {
        std::vector<std::unique_ptr<icu::SimpleDateFormat>> all;
        for (const char16_t* pattern : patterns) {
            UErrorCode status = U_ZERO_ERROR;
            all.push_back(
                std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString(pattern), status));
            all.back()->setLenient(false);
        }
        return all;
    }();
    const icu::UnicodeString input(reinterpret_cast<const char16_t*>(text.utf16()),
                                   int32_t(text.size()));
    for (const auto& format : formats) {
        icu::ParsePosition position(0);
        const UDate date = format->parse(input, position);
        if (position.getErrorIndex() == -1 && position.getIndex() == input.length())
            return qint64(date);
    }
    return std::nullopt;
}

TEST(MetadataDate, AgreesWithPlainIcuOnAssortedTexts) {
    // Pieces of real date texts and of things that only look like them; the skipped
    // patterns must never be ones that would have matched.
    const QStringList pieces{"2019",      "05",
                             "01",        "10",
                             "20",        "30",
                             "-",         ":",
                             " ",         "T",
                             "+0200",     "May",
                             "Wednesday", ",",
                             "/",         ".",
                             "PM",        "Wed",
                             "1",         "250",
                             "GMT",       "99",
                             "NaN",       "\t",
                             "x",         QString(QChar(0x0663)),
                             "-0",        "12",
                             "1999",      "Z"};
    QStringList texts{"2019:05:01 10:20:30",
                      "2019-05-01 10:20:30",
                      "2019-05-01 13:20:30",
                      "2019-05-01T10:20:30+0200",
                      "2019-05-01T10:20:30Z",
                      "05/01/2019",
                      "05-01-2019 10:20",
                      "May 1, 3:04 PM",
                      "May 2019",
                      "May 1, 2019",
                      "Wed, 1 May 2019 10:20:30 +0000",
                      "01.05.19",
                      "10:20:30.250",
                      "Wednesday, May 1, 2019",
                      "2019:5:1 1:2:3",
                      "0:0:0.0",
                      "1/1/1"};
    QRandomGenerator random(7);
    const auto piece = [&] { return pieces[int(random.bounded(qsizetype(pieces.size())))]; };
    const QStringList valid = texts;
    for (int i = 0; i < 1000; ++i) {
        QString text;
        const int count = 1 + int(random.bounded(9));
        for (int j = 0; j < count; ++j)
            text += piece();
        texts << text;
        // Valid texts with one piece swapped in, put in, or one character taken out.
        QString mutated = valid[int(random.bounded(qsizetype(valid.size())))];
        const int at = int(random.bounded(qsizetype(mutated.size())));
        switch (random.bounded(3)) {
        case 0:
            mutated.replace(at, 1, piece());
            break;
        case 1:
            mutated.insert(at, piece());
            break;
        default:
            mutated.remove(at, 1);
        }
        texts << mutated;
    }
    int parsed = 0;
    for (const QString& text : texts) {
        const auto ours = parseMetadataDate(text);
        const auto reference = plainIcuParse(text);
        ASSERT_EQ(ours.has_value(), reference.has_value()) << text.toStdString();
        if (ours) {
            EXPECT_EQ(ours->toMSecsSinceEpoch(), *reference) << text.toStdString();
            ++parsed;
        }
    }
    EXPECT_GT(parsed, 20);
}

TEST(MetadataDate, WorksOnManyThreadsAtOnce) {
    std::vector<std::thread> threads;
    std::atomic<int> good{0};
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 50; ++i)
                if (parseMetadataDate(QStringLiteral("2021-07-08 19:00:01")))
                    ++good;
        });
    for (auto& t : threads)
        t.join();
    EXPECT_EQ(good.load(), 200);
}

} // namespace
} // namespace tagmoor
