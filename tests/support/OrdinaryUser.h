#pragma once

#include <string>
#include <unistd.h>

namespace tracelet {

/// While it lives, the system refuses this program what it refuses an ordinary user, even if it runs as root.
class OrdinaryUser {
public:
    OrdinaryUser() : before(geteuid()) {
        constexpr uid_t Nobody = 65534;
        if (before == 0)
            isAnother = seteuid(Nobody) == 0;
    }
    ~OrdinaryUser() { [[maybe_unused]] const int result = seteuid(before); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

    /// Whether that is so, and the user gets into `folder`: a container may know no other user, and the
    /// folder for temporary files may be root's own.
    [[nodiscard]] bool Reaches(const std::string& folder) const {
        return (before != 0 || isAnother) && euidaccess(folder.c_str(), R_OK | X_OK) == 0;
    }

private:
    uid_t before;
    bool isAnother = false;
};

} // namespace tracelet
