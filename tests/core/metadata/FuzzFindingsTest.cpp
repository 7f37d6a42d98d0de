// Every input the fuzzers once crashed or hung on, replayed the way the fuzz targets run it.
#include "FuzzDriver.h"
#include "TestSupport.h"
#include "TimeBound.h"

#include <QTemporaryDir>

namespace tagmoor {
namespace {

using namespace tagmoor::test;

TEST(FuzzFindings, EveryKeptInputLoadsAndWritesInBoundedTime) {
    const QStringList inputs = sampleFiles(QStringLiteral(TAGMOOR_TEST_DATA "/fuzz"));
    if (inputs.isEmpty())
        GTEST_SKIP() << "no kept fuzz findings";
    for (const QString& input : inputs) {
        const QByteArray bytes = readBytes(input);
        const std::string name = QFileInfo(input).fileName().toStdString();
        QTemporaryDir dir;
        finishWithin(60, name.c_str(), [&] {
            fuzz::loadFile(fuzz::placeInput(bytes, dir.path()));
            const QString path = fuzz::placeInput(bytes, dir.path());
            fuzz::writeFile(path, fuzz::cleanChoice(bytes));
            // The write replaces the file whole or not at all: no leftovers beside it.
            EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 1) << name;
        });
    }
}

} // namespace
} // namespace tagmoor
