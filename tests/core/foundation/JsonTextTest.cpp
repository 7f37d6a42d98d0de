#include "foundation/JsonText.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

// What QJsonDocument writes for `text` as a string value.
std::string qtJsonOf(const QString& text) {
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2).toStdString();
}

TEST(JsonText, WritesEveryStringAsQtsWriterDoes) {
    QString everyAscii;
    for (char16_t c = 0; c < 0x80; ++c)
        everyAscii += QChar(c);
    const QList<QString> texts{
        QString(),
        everyAscii,
        QString::fromUtf8("\xc3\xa9t\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80 \xef\xbf\xbf \xdf\xbf"),
        // Unpaired surrogates: at the end, before a plain character, a low one alone, two highs.
        QStringLiteral("a") + QChar(0xD83D),
        QString(QChar(0xD83D)) + QLatin1Char('b'),
        QString(QChar(0xDE00)) + QLatin1Char('c'),
        QString(QChar(0xD83D)) + QChar(0xD83D) + QChar(0xDE00),
    };
    for (const QString& text : texts) {
        std::string out = "x";
        appendJsonString(out, text);
        EXPECT_EQ(out, "x" + qtJsonOf(text)) << qtJsonOf(text);
    }
}

} // namespace
} // namespace tagmoor
