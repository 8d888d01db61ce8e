#pragma once

#include <unistd.h>

namespace tracelet {

/// While it lives, the system refuses this program what it refuses an ordinary user, even if it runs as root.
class OrdinaryUser {
public:
    OrdinaryUser() : before(geteuid()) {
        constexpr uid_t Nobody = 65534;
        if (before == 0)
            isOne = seteuid(Nobody) == 0;
    }
    ~OrdinaryUser() { [[maybe_unused]] const int result = seteuid(before); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

    /// False where a container knows no other user.
    [[nodiscard]] bool IsOne() const { return isOne; }

private:
    uid_t before;
    bool isOne = true;
};

} // namespace tracelet
