// Files as users bring them, files that work files lie in, and what a failing disk does.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "platform/direct_file.h"
#include "platform/directories.h"
#include "platform/io_status.h"
#include "platform/memory.h"
#include "platform/text_file.h"
#include "support/temp_directory.h"

namespace vardento::test {
namespace {

using Lines = std::vector<std::string>;

Lines ReadAll(const std::string& path, int maxLength = kMaxLineLength) {
  TextReader reader;
  Lines lines;
  if (reader.Open(path) != kIoOk) return {"[not opened]"};
  std::string line;
  while (reader.ReadLine(line, maxLength) == kIoOk) lines.push_back(line);
  return lines;
}

TEST(TextReader, ReadsEveryKindOfLineEnd) {
  const std::string mark = "\xEF\xBB\xBF";
  struct Case {
    const char* name;
    std::string text;
    Lines lines;
  };
  const Case cases[] = {
      {"empty file", "", {}},
      {"only a byte order mark", mark, {}},
      {"one line end", "\n", {""}},
      {"Windows line ends", "a\r\n\r\nb\r\n", {"a", "", "b"}},
      {"byte order mark", mark + "a\nb\n", {"a", "b"}},
      {"a mark later is text", "a\n" + mark + "b\n", {"a", mark + "b"}},
      {"no final line end", "a\nb", {"a", "b"}},
      {"a return inside a line stays", "a\rb\n", {"a\rb"}},
      {"NUL bytes stay", std::string("a\0b\n\0\n", 6), {std::string("a\0b", 3), std::string(1, 0)}},
      {"trailing blanks stay", "a  \n", {"a  "}},
  };
  const TempDirectory directory;
  for (const Case& c : cases) {
    EXPECT_EQ(ReadAll(directory.Write("t.txt", c.text)), c.lines) << c.name;
  }
}

TEST(TextReader, CutsLongLinesAndFindsTheNextOne) {
  const TempDirectory directory;
  for (const std::size_t length : {31999U, 32000U, 32001U, 65535U, 65536U, 65537U, 200000U}) {
    const std::string text = std::string(length, 'x') + "\r\nnext\n";
    const Lines lines = ReadAll(directory.Write("long.txt", text));
    ASSERT_EQ(lines.size(), 2U) << length;
    EXPECT_EQ(lines[0], std::string(std::min<std::size_t>(length, 32000), 'x')) << length;
    EXPECT_EQ(lines[1], "next");
  }
  EXPECT_EQ(ReadAll(directory.Write("wide.txt", "abcdef\nab\n"), 3), (Lines{"abc", "ab"}));
}

TEST(File, RefusesWhatIsNoRegularFileWithoutWaiting) {
  const TempDirectory directory;
  const std::string pipe = directory.NameOf("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const std::string& name : {directory.Path(), pipe, std::string("/dev/zero")}) {
    for (FileMode mode : {FileMode::Read, FileMode::Update}) {
      File file;
      EXPECT_GT(file.Open(name, mode), 0) << name;
      EXPECT_FALSE(file.IsOpen());
    }
  }
  File file;
  EXPECT_GT(file.Open(pipe, FileMode::Replace), 0);
  EXPECT_EQ(file.Open(directory.NameOf("none"), FileMode::Read), kIoFileNotFound);
  EXPECT_EQ(file.Open(directory.NameOf("none/none"), FileMode::Read), kIoDirectoryNotFound);
  EXPECT_EQ(file.Open("/dev/null", FileMode::Replace), kIoOk);
}

TEST(File, WorkFilesArePrivateAndFollowNoLinks) {
  const TempDirectory directory;
  const std::string victim = directory.Write("victim", "keep me");
  const std::string link = directory.NameOf("link"), twin = directory.NameOf("twin");
  ASSERT_EQ(symlink(victim.c_str(), link.c_str()), 0);
  ASSERT_EQ(::link(victim.c_str(), twin.c_str()), 0);
  File file;
  EXPECT_NE(file.Open(link, FileMode::ReplacePrivate), kIoOk);
  EXPECT_NE(file.Open(twin, FileMode::ReplacePrivate), kIoOk);  // somebody else's second name
  EXPECT_NE(file.Open(link, FileMode::CreateExclusive), kIoOk);
  EXPECT_EQ(directory.Read("victim"), "keep me");
  for (FileMode mode : {FileMode::CreateExclusive, FileMode::ReplacePrivate}) {
    ASSERT_EQ(file.Open(directory.NameOf("own"), mode), kIoOk);
    struct stat info;
    ASSERT_EQ(stat(directory.NameOf("own").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777U, 0600U);
  }
  EXPECT_NE(file.Open(directory.NameOf("own"), FileMode::CreateExclusive), kIoOk);
}

TEST(MakePrivateDirectory, TakesOnlyAnOwnRealDirectory) {
  const TempDirectory directory;
  const std::string own = directory.NameOf("own"), link = directory.NameOf("link");
  EXPECT_TRUE(MakePrivateDirectory(own + "/"));
  ASSERT_EQ(chmod(own.c_str(), 0755), 0);
  EXPECT_TRUE(MakePrivateDirectory(own));
  struct stat info;
  ASSERT_EQ(stat(own.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777U, 0700U);
  ASSERT_EQ(symlink(own.c_str(), link.c_str()), 0);
  EXPECT_FALSE(MakePrivateDirectory(link));
  EXPECT_FALSE(MakePrivateDirectory(link + "/"));
  EXPECT_FALSE(MakePrivateDirectory(directory.Write("file", "")));
  EXPECT_FALSE(MakePrivateDirectory(directory.NameOf("no/where")));
}

// Against a plain map, over record lengths below, at and above the size of the window.
TEST(DirectFile, HoldsWhatWasWrittenInAnyOrder) {
  const TempDirectory directory;
  for (std::size_t length : {1U, 28U, 4096U, 70000U}) {
    const int records = length > 60000 ? 12 : 6000;
    DirectFile file;
    ASSERT_EQ(file.Create(directory.NameOf("records"), length), kIoOk);
    std::map<int, std::vector<unsigned char>> truth;
    std::mt19937 random(static_cast<unsigned>(length));
    std::vector<unsigned char> bytes(length), read(length);
    const auto write = [&](int record) {
      bytes.assign(length, static_cast<unsigned char>(random()));
      bytes.back() = static_cast<unsigned char>(record);
      ASSERT_EQ(file.Write(record, bytes.data()), kIoOk);
      truth[record] = bytes;
    };
    for (int record = 1; record <= records; ++record) write(record);
    for (int i = 0; i < 3000; ++i) {
      const int record = 1 + static_cast<int>(random() % static_cast<unsigned>(records));
      if (random() % 3 == 0) write(record);
      ASSERT_EQ(file.Read(record, read.data()), kIoOk);
      ASSERT_EQ(read, truth[record]) << length << " record " << record;
    }
    EXPECT_EQ(file.Read(records + 1, read.data()), kIoEndOfFile);
    EXPECT_GT(file.Read(0, read.data()), 0);
    ASSERT_EQ(file.Close(), kIoOk);
    EXPECT_EQ(directory.Read("records").size(), length * static_cast<std::size_t>(records));
  }
}

// Whatever operation fails, the writer learns of it, at the latest when it closes the file.
TEST(FaultInjection, EveryFailingOperationIsTold) {
  const TempDirectory directory;
  const std::string path = directory.NameOf("out");
  const auto writeText = [&] {
    TextWriter writer;
    int status = writer.Open(path, FileMode::Replace);
    for (int i = 0; i < 5 && status == kIoOk; ++i)
      status = writer.WriteLine(std::string(40000, 'x'));
    const int closed = writer.Close();
    return status == kIoOk ? closed : status;
  };
  const auto writeRecords = [&] {
    DirectFile file;
    const std::string bytes(30000, 'x');
    int status = file.Create(path, bytes.size());
    for (int i = 1; i <= 5 && status == kIoOk; ++i) status = file.Write(i, bytes.data());
    const int closed = file.Close();
    return status == kIoOk ? closed : status;
  };
  for (const auto& write : {std::function<int()>(writeText), std::function<int()>(writeRecords)}) {
    int faults = 0;
    for (int n = 1;; ++n) {
      FailFileOperation(n, ENOSPC);
      const int status = write();
      if (status == kIoOk) break;
      EXPECT_EQ(status, kIoDiskFull) << "operation " << n;
      ++faults;
      ASSERT_LT(n, 100);
    }
    FailFileOperation(0, 0);
    EXPECT_GE(faults, 4);  // open, at least two writes, close
  }
}

TEST(MemoryBlock, IsZeroedRefusedAndGivenBack) {
  MemoryBudget budget;
  budget.SetLimit(100);
  MemoryBlock first, second;
  ASSERT_TRUE(first.Allocate(budget, 60));
  for (std::size_t i = 0; i < first.Size(); ++i) EXPECT_EQ(first.Data()[i], 0);
  EXPECT_FALSE(second.Allocate(budget, 41));
  EXPECT_FALSE(second);
  EXPECT_TRUE(second.Allocate(budget, 40));
  second = std::move(first);
  first.Free();
  EXPECT_EQ(second.Size(), 60U);
  EXPECT_TRUE(first.Allocate(budget, 40));
  EXPECT_FALSE(MemoryBlock().Allocate(budget, SIZE_MAX));
}

}  // namespace
}  // namespace vardento::test
