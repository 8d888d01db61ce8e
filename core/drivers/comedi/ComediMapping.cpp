#include "core/drivers/comedi/ComediMapping.h"

#include "core/base/Convert.h"
#include "core/boards/ConverterCounts.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <charconv>
#include <limits>

namespace tracelet {
namespace {

constexpr double NanosecondsPerSecond = 1e9;

} // namespace

std::int32_t BitsOf(std::uint32_t maxdata) {
    return std::bit_width(maxdata);
}

std::int16_t CountOfWideCode(std::uint32_t code, std::int32_t bits) {
    const std::int32_t surplus = std::max(bits - 16, 0);
    return CountOf(static_cast<std::int32_t>(code >> surplus), bits - surplus);
}

std::optional<InputRange> InputRangeOf(std::int32_t code, double lowest, double highest, RangeUnit unit) {
    if (unit == RangeUnit::Unstated || !(lowest < highest))
        return std::nullopt;
    return InputRange{code, lowest, highest, unit};
}

std::uint32_t PeriodOf(double rate, std::int32_t conversions) {
    constexpr double Longest = std::numeric_limits<std::uint32_t>::max();
    constexpr double Middle = 2147483648.0; // brings 32 bits without sign into the range of CLng
    const double nanoseconds = std::min(conversions * NanosecondsPerSecond / rate, Longest);
    return static_cast<std::uint32_t>(CLng(nanoseconds - Middle)) + (std::uint32_t{1} << 31);
}

double RateOf(std::uint32_t period, std::int32_t conversions) {
    return Quotient(conversions * NanosecondsPerSecond, period);
}

std::vector<PortPlace> PortsOf(std::uint32_t subdevice, std::uint32_t lines) {
    std::vector<PortPlace> ports;
    for (std::uint32_t first = 0; first < lines; first += 8)
        ports.push_back({subdevice, first, std::min<std::uint32_t>(lines - first, 8)});
    return ports;
}

std::uint8_t PortState(const PortPlace& place, std::uint32_t bits) {
    const std::uint32_t mask = (std::uint32_t{1} << place.lines) - 1;
    return static_cast<std::uint8_t>(bits >> (place.firstLine % 32) & mask);
}

std::optional<std::int32_t> NodeNumber(std::string_view name) {
    constexpr std::string_view Prefix = "comedi";
    if (!name.starts_with(Prefix))
        return std::nullopt;
    name.remove_prefix(Prefix.size());
    if (name.empty() || name.front() < '0' || name.front() > '9')
        return std::nullopt;
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    if (error != std::errc() || end != name.data() + name.size())
        return std::nullopt;
    return number;
}

std::string BoardErrorText(int errorNumber, std::string_view otherwise) {
    switch (errorNumber) {
    case EACCES:
    case EPERM:
        return "Permission denied: join the group iocard";
    case EBUSY:
        return "The board is in use by another program";
    case ENODEV:
    case ENXIO:
    case ENOENT:
        return "The board is not there any more";
    case EINVAL:
        return "The board refuses these settings";
    case ENOMEM:
        return "Out of memory";
    case ETIME:
    case ETIMEDOUT:
        return "The board did not answer in time";
    default:
        return std::string(otherwise);
    }
}

} // namespace tracelet
