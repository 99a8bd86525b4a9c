#include "picture/ExrCompression.h"

#include <gtest/gtest.h>

namespace drevintool {
namespace {

TEST(ExrCompression, names_areThoseOfTheLibrarysNumbers) {
  EXPECT_EQ(compressionNamed("none"), Imf::NO_COMPRESSION);
  EXPECT_EQ(compressionNamed("zip"), Imf::ZIP_COMPRESSION);
  EXPECT_EQ(compressionNamed("piz"), Imf::PIZ_COMPRESSION);
  EXPECT_EQ(compressionNamed("pxr24"), Imf::PXR24_COMPRESSION);
  EXPECT_EQ(compressionNamed("b44a"), Imf::B44A_COMPRESSION);
  EXPECT_EQ(compressionNamed("dwab"), Imf::DWAB_COMPRESSION);
}

TEST(ExrCompression, unknownName_isNone) {
  for (const char* name : {"", "ZIP", "zip ", "lzw"})
    EXPECT_FALSE(compressionNamed(name)) << name;
}

TEST(ExrCompression, everyOneInTheList_hasItsName) {
  EXPECT_EQ(compressionList(), "none, rle, zips, zip, piz, pxr24, b44, b44a, dwaa, dwab");
}

}  // namespace
}  // namespace drevintool
