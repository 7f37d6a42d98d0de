#include "batch/CompactPathSet.h"

#include <gtest/gtest.h>

using namespace tagmoor;

namespace {

QString pathOf(int folder, int photo) {
    return QStringLiteral("/out/%1/IMG_%2.jpg").arg(folder).arg(photo);
}

} // namespace

// The set stands for the names a run has claimed: one wrong answer overwrites an output or
// skips a photo. It answers exactly whatever the number of entries (the table grows many times
// here) and whatever the texts: the same name in another folder, a shorter or longer name, a
// bare name against one at the root, texts beyond ASCII and a lone surrogate.
TEST(CompactPathSet, HoldsExactlyWhatWasInserted) {
    CompactPathSet set;
    EXPECT_FALSE(set.contains(pathOf(0, 0)));
    const int count = 20000;
    for (int i = 0; i < count; ++i)
        ASSERT_TRUE(set.insert(pathOf(i % 3, i)));
    EXPECT_FALSE(set.insert(pathOf(1, 1)));
    EXPECT_EQ(set.size(), count);
    for (int i = 0; i < count; ++i) {
        ASSERT_TRUE(set.contains(pathOf(i % 3, i))) << i;
        ASSERT_FALSE(set.contains(pathOf((i + 1) % 3, i))) << i;
    }
    EXPECT_FALSE(set.contains("/out/0/IMG_0.jp"));
    EXPECT_FALSE(set.contains("/out/0/IMG_0.jpgx"));
    EXPECT_FALSE(set.contains("/out/0"));

    const QString lone = QStringLiteral("/out/x") + QChar(0xD800) + QStringLiteral(".jpg");
    const QString standIn = QStringLiteral("/out/x") + QChar(0xFFFD) + QStringLiteral(".jpg");
    const QStringList odd = {QStringLiteral("2049:1234/IMG_1.jpg"), QStringLiteral("bare.jpg"),
                             QStringLiteral("/top.jpg"), QStringLiteral("/out/Ü ☃ 😀.jpg"), lone};
    for (const QString& text : odd)
        EXPECT_TRUE(set.insert(text)) << text.toStdString();
    for (const QString& text : odd)
        EXPECT_TRUE(set.contains(text)) << text.toStdString();
    EXPECT_FALSE(set.insert(lone));
    EXPECT_FALSE(set.contains(standIn));
    EXPECT_FALSE(set.contains("/bare.jpg"));
    EXPECT_FALSE(set.contains("top.jpg"));
    EXPECT_FALSE(set.contains("2049:1235/IMG_1.jpg"));
    EXPECT_EQ(set.size(), count + odd.size());
}
