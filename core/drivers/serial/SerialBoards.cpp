#include "core/drivers/serial/SerialBoards.h"

#include "core/drivers/serial/SerialBoard.h"
#include "core/drivers/serial/SourceFile.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <system_error>
#include <utility>

namespace tracelet {
namespace {

namespace fs = std::filesystem;

constexpr const char* Driver = "Lines of numbers";
constexpr std::uintmax_t LongestFile = 1 << 20; // bytes

std::string TextOf(const std::string& file) {
    std::error_code error;
    if (!fs::is_regular_file(file, error) || fs::file_size(file, error) > LongestFile)
        return {};
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

std::vector<std::string> EntriesOf(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        names.push_back(entry->path().filename().string());
    std::ranges::sort(names);
    return names;
}

void Add(BoardList& boards, const std::string& name, const LineSource& source) {
    if (std::ranges::find(boards.analog, source.address, &BoardEntry<AnalogBoard>::address) ==
        boards.analog.end())
        boards.analog.push_back(
            {name, Driver, "", false, std::make_shared<SerialBoard>(name, source), source.address, true});
}

} // namespace

std::vector<LineSource> SourcesIn(const std::string& text) {
    std::vector<LineSource> sources;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line.substr(0, line.find('#')));
        LineSource source;
        std::string rate;
        std::string more;
        words >> source.address >> rate >> more;
        const auto [end, error] = std::from_chars(rate.data(), rate.data() + rate.size(), source.baud);
        const bool isRate = error == std::errc() && end == rate.data() + rate.size() &&
                            std::ranges::find(UsualBauds(), source.baud) != UsualBauds().end();
        const bool isAddress = source.address.starts_with('/') || IsNetworkAddress(source.address);
        if (isAddress && (rate.empty() || (isRate && !IsNetworkAddress(source.address))) && more.empty())
            sources.push_back(std::move(source));
    }
    return sources;
}

std::string NameOfLine(const std::string& entry) {
    std::string name = entry;
    if (const std::size_t port = name.rfind("-if"); port != std::string::npos)
        name.erase(port);
    if (const std::size_t bus = name.find('-'); bus != std::string::npos)
        name.erase(0, bus + 1);
    std::ranges::replace(name, '_', ' ');
    return name.empty() ? entry : name;
}

void FindSerialBoards(BoardList& boards, const std::string& folder, const std::string& file) {
    const std::vector<LineSource> named = SourcesIn(TextOf(file));
    for (const std::string& entry : EntriesOf(folder)) {
        const std::string path = fs::path(folder) / entry;
        if (std::ranges::find(named, path, &LineSource::address) == named.end())
            Add(boards, NameOfLine(entry), {path, 0});
    }
    for (const LineSource& source : named) {
        const bool isListed = fs::path(source.address).parent_path() == folder;
        Add(boards, isListed ? NameOfLine(fs::path(source.address).filename()) : source.address, source);
    }
}

} // namespace tracelet
