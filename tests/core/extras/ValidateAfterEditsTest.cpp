// The edits beyond the form leave files that the metadata tools' validation finds no new fault
// in: every sample, before and after a run that adds keywords, rates, labels, writes alt text
// and keeps the creator's and the caption's copies in step.
#include "../batch/BatchTestSupport.h"

#include "extras/CopiesInStep.h"
#include "foundation/ValueForm.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tagmoor::test {
namespace {

// The warnings of exiftool's validation, by file: one "[minor] ..." text each, as often as
// they are given.
QMap<QString, QStringList> validationWarnings(const QStringList& paths) {
    const ToolResult r = runTool(
        QStringLiteral("exiftool"),
        QStringList{"-validate", "-warning", "-a", "-G1", "-s", "-q", "-q"} + paths, 300000);
    QMap<QString, QStringList> warnings;
    QString current = paths.size() == 1 ? paths.first() : QString();
    static const QRegularExpression header(QStringLiteral("^======== (.*)$"));
    static const QRegularExpression warning(QStringLiteral(R"(^\[ExifTool\]\s+Warning\s+: (.*)$)"));
    for (const QString& line : QString::fromUtf8(r.out).split(QLatin1Char('\n'))) {
        if (const auto m = header.match(line); m.hasMatch())
            current = m.captured(1);
        else if (const auto w = warning.match(line); w.hasMatch())
            warnings[current] << w.captured(1);
    }
    return warnings;
}

QStringList minus(QStringList after, const QStringList& before) {
    for (const QString& line : before)
        after.removeOne(line);
    return after;
}

TEST(ValidateAfterEdits, NoSampleGetsANewWarning) {
    if (!haveTool(QStringLiteral("exiftool")))
        GTEST_SKIP() << "exiftool is not installed (apt-get install libimage-exiftool-perl): "
                        "the validation of written files is not checked";
    const ValueFormScope form(ValueForm::standard);
    const CopiesInStepScope inStep(true);
    QTemporaryDir dir;
    QStringList photos;
    for (const QString& folder : {formatsDir(), malformedDir()}) {
        const QString into = dir.filePath(QFileInfo(folder).fileName());
        QDir().mkpath(into);
        for (const QString& sample : sampleFiles(folder))
            photos << copySample(sample, into);
    }
    ASSERT_GT(photos.size(), 30);
    const QMap<QString, QStringList> before = validationWarnings(photos);

    RunValues v = editRun(ProcessingMode::keepUnedited);
    v.writeOptions.standardForm = true;
    edit(v, "Artist", "Ana Lima");
    edit(v, "ImageDescription", "A tram in the rain");
    v.extras.addKeywords = {"Places|Portugal|Lisbon", "Tram"};
    v.extras.rating = 4;
    v.extras.label = QStringLiteral("Green");
    v.extras.texts[std::size_t(ExtraText::AltText)] = QStringLiteral("A yellow tram, wet street");
    v.extras.syncCopies = true;
    const BatchResult result = runBatch(v, recordsOf(photos));
    ASSERT_LT(result.problems.size(), photos.size() / 2) << "most samples are written";

    const QMap<QString, QStringList> after = validationWarnings(photos);
    for (const QString& photo : photos) {
        const QStringList added = minus(after.value(photo), before.value(photo));
        EXPECT_TRUE(added.isEmpty()) << QFileInfo(photo).fileName().toStdString() << ":\n"
                                     << added.join(QLatin1Char('\n')).toStdString();
    }
}

} // namespace
} // namespace tagmoor::test
