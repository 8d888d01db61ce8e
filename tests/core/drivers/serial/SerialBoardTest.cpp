// Serial lines on pseudo-terminals, whose far end writes what a microcontroller would.

#include "core/drivers/serial/SerialBoard.h"

#include "core/base/RunTimeError.h"
#include "core/base/UniqueFd.h"
#include "core/drivers/serial/SerialBoards.h"
#include "core/drivers/serial/SourceFile.h"
#include "tests/core/boards/BoardContract.h"
#include "tests/support/SerialLine.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <filesystem>
#include <optional>
#include <thread>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

namespace tracelet {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;

/// Waits for something that a thread does.
template <typename Condition>
bool Eventually(Condition condition) {
    for (const auto until = std::chrono::steady_clock::now() + 20s; std::chrono::steady_clock::now() < until;
         std::this_thread::sleep_for(1ms))
        if (condition())
            return true;
    return condition();
}

std::string Fault(const LineReader& reader) {
    try {
        (void)reader.Newest();
        return {};
    } catch (const RunTimeError& error) {
        return error.what();
    }
}

/// The first value of the newest line; none where there is a fault.
std::optional<double> First(const LineReader& reader) {
    try {
        return reader.Newest()[0];
    } catch (const RunTimeError&) {
        return {};
    }
}

/// Writes a line until the reader has taken it for sure, as something that prints all the time does.
bool Prints(const SerialLine& line, const LineReader& reader, const std::string& text, double first) {
    return Eventually([&] {
        line.Write(text);
        std::this_thread::sleep_for(5ms);
        return First(reader) == first;
    });
}

// ---- Reading

TEST(LineReader, GivesTheNewestLine) {
    const SerialLine line;
    const LineReader reader({line.path, 115200});
    EXPECT_EQ(Fault(reader), "No numbers have come yet");
    ASSERT_TRUE(Prints(line, reader, "1,2\n", 1));
    line.Write("3,4\n5,6\n");
    EXPECT_TRUE(Eventually([&] { return First(reader) == 5; }));
    EXPECT_EQ(reader.Newest()[1], 6);
    EXPECT_TRUE(std::isnan(reader.Newest()[2]));
    EXPECT_EQ(reader.Baud(), 115200);
    EXPECT_EQ(line.Speed(), B115200);
}

TEST(LineReader, CountsWhatItSkips) {
    const SerialLine line;
    const LineReader reader({line.path, 9600});
    ASSERT_TRUE(Prints(line, reader, "1\n", 1));
    const std::int64_t before = reader.Skipped();
    line.Write("rubbish\n\x81\n2\n");
    EXPECT_TRUE(Eventually([&] { return First(reader) == 2; }));
    EXPECT_EQ(reader.Skipped(), before + 2);
}

TEST(LineReader, FindsTheRate) {
    const SerialLine line;
    const LineReader reader({line.path, 0});
    // What a wrong rate makes of lines, until the right one is set.
    ASSERT_TRUE(Eventually([&] {
        line.Write(line.Speed() == B38400 ? "7 8\n" : "\xf8\x80\x78\n\xc0\xfe\n");
        std::this_thread::sleep_for(2ms);
        return Fault(reader).empty();
    })) << reader.Baud();
    EXPECT_EQ(reader.Baud(), 38400);
    EXPECT_EQ(reader.Newest()[1], 8);
}

TEST(LineReader, GarbageWithoutALineDisprovesARateToo) {
    const SerialLine line;
    const LineReader reader({line.path, 0});
    ASSERT_TRUE(Eventually([&] {
        line.Write(line.Speed() == B9600 ? "7 8\n" : std::string(64, '\xf8'));
        std::this_thread::sleep_for(2ms);
        return Fault(reader).empty();
    }));
    EXPECT_EQ(reader.Baud(), 9600);
}

TEST(LineReader, SilenceIsAnErrorAndNotTheLastValueAgain) {
    const SerialLine line;
    const LineReader reader({line.path, 9600});
    ASSERT_TRUE(Prints(line, reader, "1\n", 1));
    EXPECT_TRUE(Eventually([&] { return Fault(reader) == "No numbers come any more"; }));
    ASSERT_TRUE(Prints(line, reader, "2\n", 2)) << "and it goes on";
}

TEST(LineReader, AnUnpluggedLineIsGoneAndComesBack) {
    const TemporaryFolder folder;
    const std::string path = folder / "line";
    auto line = std::make_unique<SerialLine>();
    std::filesystem::create_symlink(line->path, path);
    const LineReader reader({path, 9600});
    ASSERT_TRUE(Prints(*line, reader, "1\n", 1));
    std::filesystem::remove(path);
    line->Unplug();
    EXPECT_TRUE(Eventually([&] { return Fault(reader) == "It is not plugged in"; })) << Fault(reader);
    line = std::make_unique<SerialLine>();
    std::filesystem::create_symlink(line->path, path);
    EXPECT_TRUE(Prints(*line, reader, "2\n", 2));
}

TEST(LineReader, TellsWhyASourceCannotBeOpened) {
    const TemporaryFolder folder;
    const auto fault = [](const std::string& address) {
        const LineReader reader({address, 0});
        for (int wait = 0; wait < 300 && Fault(reader) == "No numbers have come yet"; ++wait)
            std::this_thread::sleep_for(10ms);
        return Fault(reader);
    };
    EXPECT_EQ(fault(folder / "none"), "It is not plugged in");
    EXPECT_EQ(fault(folder.Write("file")), "It is no serial line");
    EXPECT_EQ(fault("tcp:localhost"), "An address reads tcp:HOST:PORT");
    EXPECT_EQ(fault("tcp:127.0.0.1:1"), "It takes no connections there");
    const SerialLine line;
    const LineReader first({line.path, 9600});
    ASSERT_TRUE(Prints(line, first, "1\n", 1));
    EXPECT_EQ(fault(line.path), geteuid() == 0 ? "No numbers have come yet" // root may open it twice
                                               : "It is in use by another program");
}

TEST(LineReader, ReadsTheSameLinesFromTheNetwork) {
    const UniqueFd server(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    ASSERT_EQ(bind(server.Get(), reinterpret_cast<sockaddr*>(&address), size), 0);
    ASSERT_EQ(listen(server.Get(), 1), 0);
    getsockname(server.Get(), reinterpret_cast<sockaddr*>(&address), &size);
    const LineReader reader({"tcp:127.0.0.1:" + std::to_string(ntohs(address.sin_port)), 0});
    for (const double value : {1.0, 2.0}) { // it is taken up again
        const UniqueFd client(accept(server.Get(), nullptr, nullptr));
        const std::string text = "0\n" + std::to_string(value) + "\n";
        ASSERT_EQ(send(client.Get(), text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
        EXPECT_TRUE(Eventually([&] { return First(reader) == value; }));
    }
    EXPECT_TRUE(Eventually([&] { return Fault(reader) == "The other side has closed the connection"; }));
}

// ---- The board

TEST(SerialBoard, ReadsChannelsOfTheNewestLine) {
    const SerialLine line;
    SerialBoard board("Thing", {line.path, 9600});
    const InputRange range = board.Info().ranges.front();
    const ChannelSetup channels[] = {{1, range}, {0, range}, {5, range}};
    std::vector<double> values(3);
    EXPECT_THAT([&] { board.ReadScan(channels, values); },
                ThrowsMessage<RunTimeError>("The board is not open"));
    board.Open();
    ASSERT_TRUE(Eventually([&] {
        line.Write("10,20\n");
        try {
            board.ReadScan(channels, values);
            return true;
        } catch (const RunTimeError&) {
            return false;
        }
    }));
    EXPECT_EQ(values[0], 20);
    EXPECT_EQ(values[1], 10);
    EXPECT_TRUE(std::isnan(values[2]));
}

/// A board behind a line that prints all the time.
class PrintingBoard {
public:
    PrintingBoard() {
        board.Open();
        double value = 0.0;
        const ChannelSetup channel{0, board.Info().ranges.front()};
        (void)Eventually([&] {
            try {
                board.ReadScan(std::span(&channel, 1), std::span(&value, 1));
                return true;
            } catch (const RunTimeError&) {
                return false;
            }
        });
    }
    ~PrintingBoard() {
        isOver = true;
        printer.join();
    }

private:
    SerialLine line;

public:
    SerialBoard board{"Thing", {line.path, 9600}};

private:
    std::atomic<bool> isOver = false;
    std::thread printer{[this] {
        while (!isOver) {
            line.Write("1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16\n");
            std::this_thread::sleep_for(2ms);
        }
    }};
};

std::shared_ptr<AnalogBoard> MakePrintingBoard() {
    const auto printing = std::make_shared<PrintingBoard>();
    return {printing, &printing->board};
}

INSTANTIATE_TEST_SUITE_P(Serial, AnalogBoardContract,
                         testing::Values(BoardCase<AnalogBoard>{"Printing", MakePrintingBoard}), CaseLabel);

// ---- Finding them

TEST(FindSerialBoards, ListsWhatIsPluggedInByItsNameAndSelectsNone) {
    const TemporaryFolder folder;
    folder.Write("usb-Maker_Thing_123-if00-port0");
    folder.Write("usb-Other-if01");
    BoardList boards;
    FindSerialBoards(boards, folder.Path(), folder / "none.conf");
    ASSERT_EQ(boards.analog.size(), 2U);
    EXPECT_EQ(boards.analog[0].name, "Maker Thing 123");
    EXPECT_EQ(boards.analog[0].driver, "Lines of numbers");
    EXPECT_FALSE(boards.analog[0].simulated);
    EXPECT_EQ(boards.analog[1].name, "Other");
    EXPECT_EQ(boards.DefaultAnalog(), -1);
    EXPECT_THAT(boards.digital, IsEmpty());
}

TEST(FindSerialBoards, TheDriversFileAddsSourcesAndKnowsRates) {
    const TemporaryFolder folder;
    folder.Write("usb-Other-if01");
    const TemporaryFolder etc;
    const std::string file = etc.Write("serial.conf", "# lab\n" + folder.Path() +
                                                          "/usb-Other-if01 9600\ntcp:lab7:4000 # upstairs\n");
    BoardList boards;
    FindSerialBoards(boards, folder.Path(), file);
    ASSERT_EQ(boards.analog.size(), 2U) << "none twice";
    EXPECT_EQ(boards.analog[0].name, "Other");
    EXPECT_EQ(boards.analog[1].name, "tcp:lab7:4000");
}

TEST(FindSerialBoards, NothingIsThereWithoutFolderAndFile) {
    BoardList boards;
    FindSerialBoards(boards, "/nowhere", "/nowhere/serial.conf");
    EXPECT_THAT(boards.analog, IsEmpty());
}

TEST(SourcesIn, LeavesOutWhatItDoesNotUnderstand) {
    const auto addresses = [](const std::string& text) {
        std::vector<std::string> found;
        for (const LineSource& source : SourcesIn(text))
            found.push_back(source.address + "@" + std::to_string(source.baud));
        return found;
    };
    EXPECT_THAT(addresses("/dev/ttyUSB0\n/dev/ttyACM0 9600\r\n\n  tcp:a:1  \n#/dev/x\n"),
                ElementsAre("/dev/ttyUSB0@0", "/dev/ttyACM0@9600", "tcp:a:1@0"));
    EXPECT_THAT(addresses("ttyUSB0\n/dev/a fast\n/dev/a 9601\n/dev/a 9600 8N1\ntcp:a:1 9600\n/dev/a -9600"),
                IsEmpty());
}

TEST(NameOfLine, IsReadable) {
    EXPECT_EQ(NameOfLine("usb-Maker_Thing_123-if00-port0"), "Maker Thing 123");
    EXPECT_EQ(NameOfLine("usb-1a86_USB-Serial-if00"), "1a86 USB-Serial");
    EXPECT_EQ(NameOfLine("plain"), "plain");
    EXPECT_EQ(NameOfLine("usb-"), "usb-");
}

TEST(SetBaud, RefusesWhatALineCannotHave) {
    const SerialLine line;
    const UniqueFd near(open(line.path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    EXPECT_THROW(SetBaud(near.Get(), 12345), RunTimeError);
    for (const std::int32_t baud : UsualBauds())
        EXPECT_NO_THROW(SetBaud(near.Get(), baud)) << baud;
}

} // namespace
} // namespace tracelet
