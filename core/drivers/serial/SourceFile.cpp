#include "core/drivers/serial/SourceFile.h"

#include "core/base/RunTimeError.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

namespace tracelet {
namespace {

constexpr int ConnectPatience = 3000; // milliseconds

constexpr std::pair<std::int32_t, speed_t> Speeds[] = {
    {115200, B115200}, {9600, B9600},     {57600, B57600},     {38400, B38400},    {19200, B19200},
    {230400, B230400}, {460800, B460800}, {921600, B921600},   {4800, B4800},      {2400, B2400},
    {1200, B1200},     {500000, B500000}, {1000000, B1000000}, {2000000, B2000000}};

RunTimeError OpenError(int error) {
    switch (error) {
    case EACCES:
    case EPERM:
        return RunTimeError("You may not use it; members of the group \"dialout\" may");
    case EBUSY:
        return RunTimeError("It is in use by another program");
    case ENOENT:
    case ENODEV:
    case ENXIO:
    case EIO:
        return RunTimeError("It is not plugged in");
    default:
        return Fault::FromErrno(error);
    }
}

UniqueFd OpenLine(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        throw OpenError(errno);
    UniqueFd line(descriptor);
    if (isatty(line.Get()) == 0)
        throw RunTimeError("It is no serial line");
    (void)ioctl(line.Get(), TIOCEXCL); // two readers would share its bytes
    return line;
}

struct FreeAddresses {
    void operator()(addrinfo* list) const { freeaddrinfo(list); }
};

void Await(int socket, int stop) {
    std::array<pollfd, 2> waited{{{socket, POLLOUT, 0}, {stop, POLLIN, 0}}};
    if (poll(waited.data(), waited.size(), ConnectPatience) <= 0 || waited[0].revents == 0)
        throw RunTimeError("It does not answer");
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size);
    if (error != 0)
        throw RunTimeError(error == ECONNREFUSED ? "It takes no connections there" : "It cannot be reached");
}

UniqueFd Connected(const addrinfo& address, int stop) {
    UniqueFd connection(
        socket(address.ai_family, address.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, address.ai_protocol));
    if (connect(connection.Get(), address.ai_addr, address.ai_addrlen) == 0)
        return connection;
    if (errno != EINPROGRESS)
        throw RunTimeError("It cannot be reached");
    Await(connection.Get(), stop);
    return connection;
}

// "tcp:HOST:PORT"
UniqueFd OpenNetwork(const std::string& address, int stop) {
    const std::size_t first = address.find(':');
    const std::size_t last = address.rfind(':');
    if (last <= first + 1 || last + 1 == address.size())
        throw RunTimeError("An address reads tcp:HOST:PORT");
    std::string host = address.substr(first + 1, last - first - 1);
    if (host.starts_with('[') && host.ends_with(']'))
        host = host.substr(1, host.size() - 2);
    addrinfo wanted{};
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), address.c_str() + last + 1, &wanted, &found) != 0)
        throw RunTimeError("There is no machine of that name");
    const std::unique_ptr<addrinfo, FreeAddresses> list(found);
    for (const addrinfo* one = found;; one = one->ai_next) {
        try {
            return Connected(*one, stop);
        } catch (const RunTimeError&) {
            if (one->ai_next == nullptr)
                throw;
        }
    }
}

} // namespace

std::span<const std::int32_t> UsualBauds() {
    static const auto Bauds = [] {
        std::array<std::int32_t, std::size(Speeds)> bauds{};
        std::ranges::transform(Speeds, bauds.begin(), &std::pair<std::int32_t, speed_t>::first);
        return bauds;
    }();
    return Bauds;
}

bool IsNetworkAddress(const std::string& address) {
    return address.starts_with("tcp:");
}

UniqueFd OpenSource(const LineSource& source, int stop) {
    return IsNetworkAddress(source.address) ? OpenNetwork(source.address, stop) : OpenLine(source.address);
}

void SetBaud(int descriptor, std::int32_t baud) {
    const auto speed = std::ranges::find(Speeds, baud, &std::pair<std::int32_t, speed_t>::first);
    termios line{};
    if (speed == std::end(Speeds) || tcgetattr(descriptor, &line) != 0)
        throw RunTimeError("The line cannot have that rate");
    cfmakeraw(&line);
    line.c_cflag |= CLOCAL | CREAD;
    line.c_cflag &= ~static_cast<tcflag_t>(CSTOPB | CRTSCTS);
    cfsetspeed(&line, speed->second);
    if (tcsetattr(descriptor, TCSANOW, &line) != 0)
        throw RunTimeError("The line cannot have that rate");
    tcflush(descriptor, TCIFLUSH);
}

} // namespace tracelet
