# Shared by the scripts beside it: work from the repository's root, install what is missing.

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

# install PACKAGE...: installs those Debian packages that are not there yet, as root or through sudo.
install() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    local admin=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || { echo "Installing ${missing[*]} needs root or sudo." >&2; exit 1; }
        admin=(sudo)
    fi
    echo "Installing ${missing[*]}"
    "${admin[@]}" apt-get update -qq
    "${admin[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
        "${missing[@]}" >/dev/null
}

build_tools=(g++ cmake ninja-build qt6-base-dev qt6-svg-dev libgl-dev libfontconfig-dev fonts-dejavu-core libcomedi-dev
    nlohmann-json3-dev)
test_tools=(libgtest-dev libgmock-dev python3 locales)
