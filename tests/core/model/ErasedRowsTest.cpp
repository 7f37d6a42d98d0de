#include "model/ErasedRows.h"

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

// The order rows are added in is the order they are listed (and erased) in, a row added twice
// counts once, and a row is the same whichever copy of it names it.
TEST(ErasedRows, KeepTheirOrderHoldEachRowOnceAndCompareByRow) {
    ErasedRows erased;
    const KeyRow copy = exifKeyRows()[exifrow::GPSLatitude];
    erased.add(exifKeyRows()[exifrow::Orientation]);
    erased.add(copy);
    erased.add(exifKeyRows()[0]);
    erased.add(exifKeyRows()[exifrow::GPSLatitude]);
    erased.add(xmpKeyRows()[xmprow::Lens]);

    EXPECT_EQ(erased.keys(KeyBlock::Exif),
              QStringList({"Exif.Image.Orientation", "Exif.GPSInfo.GPSLatitude",
                           QString::fromLatin1(exifKeyRows()[0].key)}));
    EXPECT_TRUE(erased.isEmpty(KeyBlock::Iptc));
    EXPECT_EQ(erased.keys(KeyBlock::Xmp), QStringList{"Xmp.aux.Lens"});
    EXPECT_TRUE(erased.contains(copy));
    EXPECT_FALSE(erased.contains(exifKeyRows()[exifrow::GPSLongitude]));

    ErasedRows same;
    for (const KeyBlock block : {KeyBlock::Exif, KeyBlock::Xmp}) {
        for (const KeyRow* row : erased.rows(block))
            same.add(KeyRow(*row));
    }
    EXPECT_EQ(same, erased);
}

TEST(ErasedRows, OfKeysTakesTheTableRowsAndLeavesOutOtherTexts) {
    const ErasedRows erased = ErasedRows::ofKeys(
        {"Xmp.aux.Lens", "Exif.NoSuchGroup.Thing", "Iptc.Application2.Keywords", "Xmp.aux.Lens"});
    EXPECT_TRUE(erased.isEmpty(KeyBlock::Exif));
    EXPECT_EQ(erased.keys(KeyBlock::Iptc), QStringList{"Iptc.Application2.Keywords"});
    EXPECT_EQ(erased.keys(KeyBlock::Xmp), QStringList{"Xmp.aux.Lens"});
    EXPECT_TRUE(erased.contains(iptcKeyRows()[iptcrow::Keywords]));
}

} // namespace
} // namespace tagmoor
