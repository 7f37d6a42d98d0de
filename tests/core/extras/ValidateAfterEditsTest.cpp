// The edits beyond the form leave files that the metadata tools' validation finds no new fault
// in: every sample, before and after a run that adds keywords, rates, labels, writes alt text
// and keeps the creator's and the caption's copies in step.
#include "../batch/BatchTestSupport.h"

#include "extras/CopiesInStep.h"
#include "foundation/ValueForm.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

namespace tagmoor::test {
namespace {

QStringList minus(QStringList after, const QStringList& before) {
    for (const QString& line : before)
        after.removeOne(line);
    return after;
}

// Warnings that a run gives on purpose: the rating goes into IFD0 as Windows writes it, which
// the Exif standard does not name; a value the photo holds goes into IPTC whole even where it
// is longer than IIM allows (one XMP keyword that lists ten, say), rather than cut.
bool givenOnPurpose(const QString& warning) {
    static const QRegularExpression onPurpose(
        QStringLiteral(R"(^\[minor\] (Non-standard IFD0 tag 0x474[69] Rating(Percent)?|)"
                       R"(IPTC \w+ too long \(\d+ bytes; should be \d+( max)?\))$)"));
    return onPurpose.match(warning).hasMatch();
}

// A directory or block that exiftool could not read before the run: what it finds in the
// written file (the damaged directory's own junk entries, say) was hidden from it before, so
// its warnings before and after do not compare.
bool unreadableBefore(const QStringList& warnings) {
    static const QRegularExpression unreadable(
        QStringLiteral(R"(^(Illegal \w+ directory size|Bad \w+ data))"));
    return std::any_of(warnings.begin(), warnings.end(),
                       [](const QString& w) { return unreadable.match(w).hasMatch(); });
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
        if (unreadableBefore(before.value(photo)))
            continue;
        QStringList added = minus(after.value(photo), before.value(photo));
        added.removeIf(givenOnPurpose);
        EXPECT_TRUE(added.isEmpty()) << QFileInfo(photo).fileName().toStdString() << ":\n"
                                     << added.join(QLatin1Char('\n')).toStdString();
    }
}

} // namespace
} // namespace tagmoor::test
