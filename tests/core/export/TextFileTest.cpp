#include "core/export/TextFile.h"

#include "core/base/RunTimeError.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace tracelet {
namespace {

void AddLine(TextFile& file, const std::string& line) {
    char* out = file.Line(line.size());
    file.EndLine(std::copy(line.begin(), line.end(), out));
}

TEST(TextFile, HoldsTheLinesInOrder) {
    const TemporaryFolder folder;
    TextFile file(folder / "a");
    AddLine(file, "Time");
    AddLine(file, "\r\n1");
    AddLine(file, "\r\n2");
    file.Close();
    EXPECT_EQ(ContentOf(folder / "a"), "Time\r\n1\r\n2");
}

TEST(TextFile, EmptiesAnExistingFile) {
    const TemporaryFolder folder;
    folder.Write("a", "what was there before");
    TextFile file(folder / "a");
    AddLine(file, "new");
    file.Close();
    EXPECT_EQ(ContentOf(folder / "a"), "new");
}

TEST(TextFile, TakesLinesLongerThanItsBuffer) {
    const TemporaryFolder folder;
    TextFile file(folder / "a");
    const std::string longLine(3000000, 'x');
    AddLine(file, "short");
    AddLine(file, longLine);
    AddLine(file, "short");
    file.Close();
    EXPECT_EQ(ContentOf(folder / "a"), "short" + longLine + "short");
}

TEST(TextFile, KeepsEveryByteOfManyLines) {
    const TemporaryFolder folder;
    TextFile file(folder / "a");
    std::string expected;
    for (int i = 0; i < 100000; ++i) {
        const std::string line = "\r\n" + std::to_string(i * 7919);
        AddLine(file, line);
        expected += line;
    }
    file.Close();
    EXPECT_TRUE(ContentOf(folder / "a") == expected);
}

TEST(TextFile, SaysWhyItCannotBeCreated) {
    const TemporaryFolder folder;
    EXPECT_EQ(FaultOf([&] { TextFile file(folder / "missing/a"); }), "File not found");
    EXPECT_EQ(FaultOf([&] { TextFile file(folder / ""); }), "Permission denied"); // a directory
}

TEST(TextFile, ReportsAFullDisk) {
    TextFile file("/dev/full");
    AddLine(file, "Time");
    EXPECT_EQ(FaultOf([&] { file.Close(); }), "Disk full");
}

TEST(TextFile, ReportsAFullDiskAsSoonAsItsBufferIsFull) {
    TextFile file("/dev/full");
    EXPECT_EQ(FaultOf([&] {
                  for (int i = 0; i < 1000000; ++i)
                      AddLine(file, "\r\n0.1\t0.2");
              }),
              "Disk full");
}

TEST(TextFile, LeavesWholeLinesWhenAWriteFails) {
    const std::string line = "\r\n0.12345\t-9.87654";
    // Limits at the end of the header, inside a line break, inside a line, exactly behind a line, in later
    // blocks.
    for (const std::size_t limit :
         {std::size_t{2}, std::size_t{4}, std::size_t{5}, std::size_t{6}, std::size_t{30},
          4 + 10 * line.size(), 4 + 10 * line.size() + 1, std::size_t{1048576}, std::size_t{2500001}}) {
        const TemporaryFolder folder;
        std::string expected = limit < 4 ? "" : "Time";
        while (!expected.empty() && expected.size() + line.size() <= limit)
            expected += line;
        TextFile file(folder / "a");
        std::string description;
        {
            const FileSizeLimit full(limit);
            description = FaultOf([&] {
                AddLine(file, "Time");
                for (int i = 0; i < 200000; ++i)
                    AddLine(file, line);
                file.Close();
            });
        }
        EXPECT_EQ(description, "File too large");
        EXPECT_TRUE(ContentOf(folder / "a") == expected)
            << "limit " << limit << ": " << ContentOf(folder / "a").size() << " bytes instead of "
            << expected.size();
    }
}

} // namespace
} // namespace tracelet
