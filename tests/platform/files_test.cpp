#include "platform/files.h"

#include <gtest/gtest.h>

namespace quillan {
namespace {

TEST(FilesTest, FileNamesAreTakenFromPathsOfEitherKind) {
  EXPECT_EQ(FileNameFromPath("C:/Program Files/a.b.txt", FileExtension::kDrop), "a.b");
  EXPECT_EQ(FileNameFromPath("C:\\x/y\\a.txt", FileExtension::kKeep), "a.txt");
  EXPECT_EQ(FileNameFromPath("c:a.txt", FileExtension::kKeep), "a.txt");
  EXPECT_EQ(FileNameFromPath("dir.d/name", FileExtension::kDrop), "name");
  EXPECT_EQ(FileNameFromPath("dir/", FileExtension::kDrop), "");
}

}  // namespace
}  // namespace quillan
