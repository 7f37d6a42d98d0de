// Every damaged input kept in tests/data (and the fuzzers' findings in tests/data/fuzz),
// replayed the way the fuzz targets run it: loaded, then written, stripped and read back.
#include "FuzzDriver.h"
#include "TestSupport.h"
#include "TimeBound.h"

#include <QTemporaryDir>

namespace tagmoor {
namespace {

using namespace tagmoor::test;

TEST(FuzzFindings, EveryKeptInputLoadsAndWritesInBoundedTime) {
    const QString data = QStringLiteral(TAGMOOR_TEST_DATA);
    const QStringList inputs = sampleFiles(data) + sampleFiles(data + QStringLiteral("/fuzz"));
    ASSERT_FALSE(inputs.isEmpty());
    for (const QString& input : inputs) {
        const QByteArray bytes = readBytes(input);
        const std::string name = QFileInfo(input).fileName().toStdString();
        QTemporaryDir dir;
        finishWithin(60, name.c_str(), [&] {
            fuzz::loadFile(fuzz::placeInput(bytes, dir.path()));
            const QString path = fuzz::placeInput(bytes, dir.path());
            fuzz::writeFile(path, fuzz::cleanChoice(bytes));
            // The write replaces the file whole or not at all: nothing is left beside it.
            EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 1) << name;
        });
    }
}

} // namespace
} // namespace tagmoor
