#include "model/CGImageProperties.h"

#include <QSize>

#include <atomic>
#include <cmath>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

using namespace tagmoor;

TEST(PropertyValue, KindsStayApart) {
    PropertyValue f(3.0f);
    EXPECT_EQ(f.kind(), PropertyValue::Kind::Float32);
    EXPECT_EQ(f.float32(), 3.0f);
    EXPECT_FALSE(f.int64().has_value());
    EXPECT_FALSE(f.float64().has_value());
    EXPECT_FALSE(f.text().has_value());

    PropertyValue d(QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5), Qt::UTC));
    EXPECT_TRUE(d.date().has_value());
    EXPECT_FALSE(d.text().has_value());

    EXPECT_EQ(PropertyValue(qint64(7)).int64(), 7);
    EXPECT_FALSE(PropertyValue(qint64(7)).uint64().has_value());
    EXPECT_EQ(PropertyValue(quint8(200)).uint8(), quint8(200));
    EXPECT_FALSE(PropertyValue(quint8(200)).int64().has_value());
    EXPECT_EQ(PropertyValue(quint64(5)).uint64(), quint64(5));
    EXPECT_EQ(PropertyValue(QStringLiteral("x")).text(), QStringLiteral("x"));
    EXPECT_TRUE(PropertyValue(QByteArray("ab")).bytes().has_value());
    EXPECT_TRUE(PropertyValue(QVariantList{1}).list().has_value());
    EXPECT_TRUE(PropertyValue(QVariantMap{{"a", 1}}).dictionary().has_value());

    // Values of other kinds, and a plain int variant, count as absent.
    EXPECT_TRUE(PropertyValue::fromVariant(QVariant(QSize(1, 1))).isAbsent());
    EXPECT_TRUE(PropertyValue::fromVariant(QVariant(int(3))).isAbsent());
    EXPECT_TRUE(PropertyValue().isAbsent());

    // Equality needs the same kind, not only an equal number.
    EXPECT_FALSE(PropertyValue(3.0f) == PropertyValue(3.0));
    EXPECT_TRUE(PropertyValue(3.0f) == PropertyValue(3.0f));
}

TEST(CGImageProperties, EmptyRecordAndValueSemantics) {
    const QUrl url = QUrl::fromLocalFile(QStringLiteral("/tmp/a.jpg"));
    CGImageProperties r = makeEmptyRecord(url);
    EXPECT_EQ(r.url, url);
    EXPECT_TRUE(r.isSelected);
    EXPECT_FALSE(r.isTempDataAvailable);
    EXPECT_TRUE(r.tiffProperties && r.exifProperties && r.iptcProperties && r.gpsProperties &&
                r.xmpDataProperties);
    EXPECT_FALSE(r.rawProperties || r.dngProperties || r.makerAppleProperties);
    int present = 0;
    forEachPresentValue(r, [&](auto&&...) { ++present; });
    EXPECT_EQ(present, 0);

    // The two orientations are separate fields.
    r.tiffProperties->orientation = PropertyValue(qint64(6));
    EXPECT_TRUE(r.orientation.isAbsent());

    CGImageProperties copy = r;
    copy.tiffProperties->artist = QStringLiteral("Jane");
    EXPECT_TRUE(r.tiffProperties->artist.isAbsent());
    EXPECT_FALSE(copy == r);
}

TEST(CGImageProperties, FieldTablesFollowDeclaredOrder) {
    EXPECT_EQ(TiffProperties::fieldCount, 20u);
    EXPECT_EQ(EXIFProperties::fieldCount, 69u);
    EXPECT_EQ(IPTCProperties::fieldCount, 19u);
    EXPECT_EQ(GPSProperties::fieldCount, 6u);
    EXPECT_EQ(XMPDataProperties::fieldCount, 5u);
    EXPECT_EQ(PNGProperties::fieldCount, 20u);
    EXPECT_STREQ(TiffProperties::fields()[1].name, "photoetricInterpretation");
    EXPECT_STREQ(EXIFProperties::fields().back().name, "gamma");
    EXPECT_STREQ(XMPDataProperties::fields()[4].name, "photoshopCreateDate");
    EXPECT_EQ(PNGProperties::fields()[2].imageIOKey, nullptr);

    CGImageProperties r = makeEmptyRecord(std::nullopt);
    r.exifProperties->fNumber = 2.8f;
    r.pixelWidth = 640.0;
    QStringList seen;
    forEachPresentValue(r, [&](const char* g, const char* f, const char*, const PropertyValue&) {
        seen << QStringLiteral("%1.%2").arg(QLatin1String(g), QLatin1String(f));
    });
    EXPECT_EQ(seen, (QStringList{"exifProperties.fNumber", ".pixelWidth"}));
}

// A value held apart from its record: copies, assignments (onto itself too) and moves each leave
// values of their own, and clearing or moving one never reaches another.
TEST(PropertyValue, CopiesAndMovesKeepTheirOwnValues) {
    PropertyValue a(QStringLiteral("Jane"));
    PropertyValue b = a;
    a = PropertyValue(qint64(4));
    EXPECT_EQ(b.text(), QStringLiteral("Jane"));
    EXPECT_EQ(a.int64(), 4);
    const PropertyValue& same = a;
    a = same;
    EXPECT_EQ(a.int64(), 4);
    PropertyValue moved = std::move(b);
    EXPECT_EQ(moved.text(), QStringLiteral("Jane"));
    b = moved;
    moved.clear();
    EXPECT_TRUE(moved.isAbsent());
    EXPECT_FALSE(moved.variant().isValid());
    EXPECT_EQ(b.text(), QStringLiteral("Jane"));
    EXPECT_EQ(PropertyValue::fromVariant(QVariant()), PropertyValue());
    EXPECT_EQ(PropertyValue::fromVariant(QVariant(QStringLiteral("x"))), PropertyValue("x"));
}

// Equal values read from many photos share one node; sharing never merges two values that show
// differently: a date keeps its offset and its kind of time, and a real its sign.
TEST(PropertyValue, SharedValuesKeepHowTheyShow) {
    const QDateTime instant(QDate(2021, 6, 1), QTime(12, 0), Qt::UTC);
    const PropertyValue utc(instant);
    const PropertyValue plusTwo(instant.toOffsetFromUtc(2 * 3600));
    const PropertyValue local(instant.toLocalTime());
    PropertyValue again(QDateTime(QDate(2021, 6, 1), QTime(14, 0), Qt::OffsetFromUTC, 2 * 3600));
    EXPECT_EQ(plusTwo.date()->offsetFromUtc(), 2 * 3600);
    EXPECT_EQ(plusTwo.date()->time(), QTime(14, 0));
    EXPECT_EQ(utc.date()->timeSpec(), Qt::UTC);
    EXPECT_EQ(local.date()->timeSpec(), Qt::LocalTime);
    EXPECT_EQ(again.date()->time(), QTime(14, 0));
    EXPECT_EQ(again.date()->offsetFromUtc(), 2 * 3600);

    const PropertyValue zero(0.0);
    const PropertyValue minusZero(-0.0);
    EXPECT_FALSE(std::signbit(*zero.float64()));
    EXPECT_TRUE(std::signbit(*minusZero.float64()));
    EXPECT_EQ(PropertyValue(2.8f).float32(), 2.8f);
    EXPECT_EQ(PropertyValue(2.8).float64(), 2.8);
    EXPECT_EQ(PropertyValue(quint8(1)).uint8(), quint8(1));
    EXPECT_FALSE(PropertyValue(quint8(1)) == PropertyValue(qint64(1)));
}

// Equal values share one stored value, except while an UnsharedValues lives on the thread:
// then each takes its own, freed with it, and sharing comes back when the outermost ends.
TEST(PropertyValue, UnsharedValuesShareNothingWhileTheyLive) {
    const QString shared = QStringLiteral("shared between records");
    const QString once = QStringLiteral("printed once");
    const std::size_t before = ValuePool::liveCount();
    const PropertyValue first(shared);
    const PropertyValue second(shared);
    EXPECT_EQ(ValuePool::liveCount(), before + 1);
    {
        const UnsharedValues outer;
        const PropertyValue a(once);
        const PropertyValue b(once);
        { const UnsharedValues inner; }
        const PropertyValue c(shared);
        EXPECT_EQ(ValuePool::liveCount(), before + 4);
        EXPECT_EQ(c, first);
    }
    EXPECT_EQ(ValuePool::liveCount(), before + 1);
    const PropertyValue third(shared);
    EXPECT_EQ(ValuePool::liveCount(), before + 1);
}

// Values made on one thread and dropped on another: each keeps its content while any copy
// lives, and once every copy is gone (the threads' caches of shared values with them) the
// store holds no more than before. Run under load so that taking and freeing numbers race.
TEST(PropertyValue, ValuesPassedBetweenThreadsStayIntactAndAreFreed) {
    const std::size_t before = ValuePool::liveCount();
    constexpr int kCount = 40000;
    std::mutex lock;
    std::vector<std::pair<int, PropertyValue>> handedOver;
    std::atomic<int> wrong = 0;
    const auto work = [&](int side) {
        std::vector<std::pair<int, PropertyValue>> mine;
        for (int i = 0; i < kCount; ++i) {
            const int n = side * kCount + i;
            PropertyValue v = (i % 2) ? PropertyValue(QStringLiteral("text %1").arg(n))
                                      : PropertyValue(double(n) + 0.5);
            mine.emplace_back(n, v);
            if (i % 64 == 63) {
                const std::lock_guard guard(lock);
                for (auto& item : mine)
                    handedOver.push_back(std::move(item));
                mine.clear();
                // Take back what the other thread handed over, check it, and drop it here.
                for (auto it = handedOver.begin(); it != handedOver.end();) {
                    if (it->first / kCount == side) {
                        ++it;
                        continue;
                    }
                    const int m = it->first;
                    const bool ok = (m % kCount) % 2
                                        ? it->second.text() == QStringLiteral("text %1").arg(m)
                                        : it->second.float64() == double(m) + 0.5;
                    wrong += ok ? 0 : 1;
                    it = handedOver.erase(it);
                }
            }
        }
    };
    std::thread a(work, 0);
    std::thread b(work, 1);
    a.join();
    b.join();
    for (const auto& [n, v] : handedOver) {
        const bool ok = (n % kCount) % 2 ? v.text() == QStringLiteral("text %1").arg(n)
                                         : v.float64() == double(n) + 0.5;
        wrong += ok ? 0 : 1;
    }
    EXPECT_EQ(wrong, 0);
    handedOver.clear();
    EXPECT_EQ(ValuePool::liveCount(), before);
}

// A copied record shares its groups until one copy changes one of them; reading does not part
// them.
TEST(CGImageProperties, CopiesShareGroupsUntilWritten) {
    CGImageProperties r = makeEmptyRecord(QUrl::fromLocalFile(QStringLiteral("/tmp/b.jpg")));
    r.exifProperties->fNumber = 2.8f;
    CGImageProperties copy = r;
    const auto& constCopy = copy;
    EXPECT_EQ(&*constCopy.exifProperties, &*std::as_const(r).exifProperties);
    EXPECT_EQ(constCopy.exifProperties->fNumber.float32(), 2.8f);
    EXPECT_TRUE(copy == r);

    copy.exifProperties->fNumber = 4.0f;
    EXPECT_NE(&*constCopy.exifProperties, &*std::as_const(r).exifProperties);
    EXPECT_EQ(r.exifProperties->fNumber.float32(), 2.8f);
    EXPECT_FALSE(copy == r);

    copy.gpsProperties = std::nullopt;
    EXPECT_FALSE(copy.gpsProperties.has_value());
    EXPECT_TRUE(r.gpsProperties.has_value());
    EXPECT_THROW((void)copy.gpsProperties.value(), std::bad_optional_access);
    copy.gpsProperties.emplace().latitude = 1.5;
    EXPECT_EQ(copy.gpsProperties->latitude.float64(), 1.5);
}
