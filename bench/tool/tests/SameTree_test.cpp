#include "SameTree.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "TempFolder.h"

namespace {

const off_t kSize = 8 << 20;

// A file of `size` bytes, all holes but `text` at `offset`.
void WriteSparse(const std::string& path, off_t size, off_t offset, const std::string& text) {
  const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  ASSERT_GE(fd, 0);
  ASSERT_EQ(ftruncate(fd, size), 0);
  ASSERT_EQ(pwrite(fd, text.data(), text.size(), offset), static_cast<ssize_t>(text.size()));
  close(fd);
}

// The same bytes as WriteSparse, every one written.
void WriteDense(const std::string& path, off_t size, off_t offset, const std::string& text) {
  std::string bytes(static_cast<size_t>(size), '\0');
  bytes.replace(static_cast<size_t>(offset), text.size(), text);
  const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  ASSERT_GE(fd, 0);
  ASSERT_EQ(write(fd, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  close(fd);
}

TEST(SameFile, ReadsHolesAsZerosInEitherFile) {
  const bench::TempFolder folder;
  WriteSparse(folder / "sparse", kSize, kSize - 3, "end");
  WriteDense(folder / "dense", kSize, kSize - 3, "end");
  EXPECT_TRUE(bench::SameFile(folder / "sparse", folder / "dense"));
  EXPECT_TRUE(bench::SameFile(folder / "dense", folder / "sparse"));
}

TEST(SameFile, FindsADifferenceWhereOnlyOneFileHoldsData) {
  const bench::TempFolder folder;
  WriteSparse(folder / "a", kSize, 5 << 20, "x");
  WriteSparse(folder / "b", kSize, 5 << 20, "y");
  WriteSparse(folder / "zeros", kSize, 0, std::string(1, '\0'));
  EXPECT_FALSE(bench::SameFile(folder / "a", folder / "b"));
  EXPECT_FALSE(bench::SameFile(folder / "zeros", folder / "a"));
  EXPECT_FALSE(bench::SameFile(folder / "a", folder / "zeros"));
}

TEST(SameFile, TellsSizesApart) {
  const bench::TempFolder folder;
  WriteSparse(folder / "short", kSize - 1, 0, "x");
  WriteSparse(folder / "long", kSize, 0, "x");
  EXPECT_FALSE(bench::SameFile(folder / "short", folder / "long"));
  EXPECT_FALSE(bench::SameFile(folder / "short", folder / "missing"));
}

// A tree: data/x.js, media/photo (sparse) and index.html.
void WriteTree(const std::string& root) {
  std::filesystem::create_directories(root + "/data");
  std::filesystem::create_directories(root + "/media");
  WriteSparse(root + "/data/x.js", 4, 0, "x();");
  WriteSparse(root + "/media/photo", kSize, 1 << 20, "JFIF");
  WriteSparse(root + "/index.html", 6, 0, "<html>");
}

TEST(SameTree, ComparesNamesTypesAndBytes) {
  const bench::TempFolder folder;
  WriteTree(folder / "a");
  WriteTree(folder / "b");
  EXPECT_TRUE(bench::SameTree(folder / "a", folder / "b"));

  WriteSparse(folder / "b/media/photo", kSize, 1 << 20, "JFIG");
  EXPECT_FALSE(bench::SameTree(folder / "a", folder / "b"));
  WriteTree(folder / "b");
  std::filesystem::create_directories(folder / "b/media/empty");
  EXPECT_FALSE(bench::SameTree(folder / "a", folder / "b"));
  std::filesystem::remove(folder / "b/media/empty");
  std::filesystem::rename(folder / "b/index.html", folder / "b/index.htm");
  EXPECT_FALSE(bench::SameTree(folder / "a", folder / "b"));
  EXPECT_FALSE(bench::SameTree(folder / "a", folder / "missing"));
}

TEST(SameTree, TellsAFileFromAFolderOrALink) {
  const bench::TempFolder folder;
  std::filesystem::create_directories(folder / "a/x");
  std::filesystem::create_directories(folder / "b");
  WriteSparse(folder / "b/x", 0, 0, "");
  EXPECT_FALSE(bench::SameTree(folder / "a", folder / "b"));
  std::filesystem::create_directories(folder / "c");
  std::filesystem::create_directories(folder / "d");
  std::filesystem::create_symlink("one", folder / "c/link");
  std::filesystem::create_symlink("two", folder / "d/link");
  EXPECT_FALSE(bench::SameTree(folder / "c", folder / "d"));
  std::filesystem::remove(folder / "d/link");
  std::filesystem::create_symlink("one", folder / "d/link");
  EXPECT_TRUE(bench::SameTree(folder / "c", folder / "d"));
}

}  // namespace
