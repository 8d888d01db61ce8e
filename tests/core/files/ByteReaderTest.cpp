#include "core/files/ByteReader.h"

#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tracelet {
namespace {

using namespace std::string_literals;

TEST(ByteReader, ReadsFieldsOfBytesAndOfFiles) {
    const TemporaryFolder folder;
    const auto content = "\x01\x02\x03\x04\xFF\xFFname\0tail"s;
    const SystemFile file(folder.Write("a", content), Disposition::OpenExisting);
    for (ByteReader reader : {ByteReader(std::as_bytes(std::span(content))), ByteReader(file)}) {
        EXPECT_EQ(reader.Remaining(), 15);
        EXPECT_EQ(reader.Get<std::int32_t>(), 0x04030201);
        EXPECT_EQ(reader.Get<std::int16_t>(), -1);
        EXPECT_EQ(reader.Readsz(), "name");
        EXPECT_EQ(reader.Remaining(), 4);
        ByteReader same = reader;
        EXPECT_EQ(FaultOf([&] { (void)same.Get<double>(); }), "Unexpected end of file");
        EXPECT_EQ(reader.Readsz(), "tail") << "the end ends a text";
        EXPECT_EQ(reader.Remaining(), 0);
        EXPECT_EQ(reader.Readsz(), "");
    }
}

TEST(ByteReader, CrossesItsBuffer) {
    const std::string longText(200'000, 'x');
    const auto content = std::string(65533, '-') + "\x01\x02\x03\x04" + longText + "\0\x05"s;
    ByteReader reader(std::as_bytes(std::span(content)));
    std::string dashes(65533, '\0');
    reader.GetBytes(std::as_writable_bytes(std::span(dashes)));
    EXPECT_EQ(dashes, std::string(65533, '-'));
    EXPECT_EQ(reader.Get<std::int32_t>(), 0x04030201);
    EXPECT_EQ(reader.Readsz(), longText);
    EXPECT_EQ(reader.Get<std::uint8_t>(), 5);
    EXPECT_EQ(reader.Remaining(), 0);
}

TEST(ByteReader, TakesTextsUpToItsLimit) {
    const std::string longest(ByteReader::LongestText, 'x');
    EXPECT_EQ(ByteReader(std::as_bytes(std::span(longest))).Readsz(), longest);
    const std::string tooLong = longest + "x";
    EXPECT_EQ(FaultOf([&] { (void)ByteReader(std::as_bytes(std::span(tooLong))).Readsz(); }),
              "Text too long in file");
}

TEST(ByteReader, ReadsNothingOfAFileThatShrank) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a", "12345678");
    const SystemFile file(path, Disposition::OpenExisting);
    ByteReader reader(file);
    std::filesystem::resize_file(path, 2);
    EXPECT_EQ(FaultOf([&] { (void)reader.Get<std::int32_t>(); }), "Unexpected end of file");
    EXPECT_EQ(reader.Readsz(), "");
}

} // namespace
} // namespace tracelet
