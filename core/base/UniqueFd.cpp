#include "core/base/UniqueFd.h"

#include "core/base/RunTimeError.h"

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace tracelet {

UniqueFd::UniqueFd(int given) : descriptor(given) {
    if (given == None)
        throw Fault::FromErrno(errno);
}

int UniqueFd::Close() noexcept {
    if (descriptor == None || close(std::exchange(descriptor, None)) == 0 || errno == EINTR)
        return 0;
    return errno;
}

} // namespace tracelet
