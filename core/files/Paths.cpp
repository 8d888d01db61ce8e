#include "core/files/Paths.h"

#include "core/base/RunTimeError.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cwctype>
#include <fcntl.h>
#include <filesystem>
#include <locale.h>
#include <random>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace tracelet {
namespace {

constexpr char Separator = '/';
constexpr std::string_view Separators = "\\/";

bool IsLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool IsOfAnotherSystem(std::string_view text) {
    const bool driveLetter = text.size() >= 2 && IsLetter(text[0]) && text[1] == ':';
    return driveLetter || text.starts_with("\\\\");
}

bool IsRegularFile(const std::string& nativePath) {
    struct stat status {};
    return stat(nativePath.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool IsHidden(std::string_view name) {
    return name.starts_with('.');
}

// Length of the UTF-8 sequence at the head of `text`, 1 for a byte that starts none; the code point goes to
// `code`.
std::size_t DecodeFirst(std::string_view text, char32_t& code) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byteAt(0);
    const std::size_t length = first < 0xC2   ? 1U
                               : first < 0xE0 ? 2U
                               : first < 0xF0 ? 3U
                               : first < 0xF5 ? 4U
                                              : 1U;
    code = length == 1 ? first : first & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (i >= text.size() || (byteAt(i) & 0xC0U) != 0x80U) {
            code = first;
            return 1;
        }
        code = (code << 6U) | (byteAt(i) & 0x3FU);
    }
    return length;
}

char32_t UpperCased(char32_t code) {
    static const locale_t Unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (Unicode != nullptr)
        return static_cast<char32_t>(towupper_l(static_cast<wint_t>(code), Unicode));
    return code >= U'a' && code <= U'z' ? code - U'a' + U'A' : code;
}

// Bytes that are no UTF-8 stand for themselves, marked so that they equal no character.
std::u32string UpperCased(std::string_view text) {
    constexpr char32_t NoCharacter = 0x80000000U;
    std::u32string upper;
    while (!text.empty()) {
        char32_t code = 0;
        const std::size_t length = DecodeFirst(text, code);
        const bool stray = length == 1 && code >= 0x80;
        upper += stray ? NoCharacter | code : UpperCased(code);
        text.remove_prefix(length);
    }
    return upper;
}

std::optional<std::string> ListedFile(const std::string& folder, std::string_view name) {
    const std::u32string wanted = UpperCased(name);
    std::error_code error;
    std::filesystem::directory_iterator entry(folder.empty() ? "." : folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::string found = entry->path().filename().string();
        if (UpperCased(found) == wanted && IsRegularFile(folder + found))
            return folder + found;
    }
    return std::nullopt;
}

std::string WithSeparator(std::string folder) {
    if (folder.empty() || folder.back() != Separator)
        folder += Separator;
    return folder;
}

// Creates `path` when nothing has that name yet; the value of errno otherwise.
int CreateNew(const std::string& path) {
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file < 0)
        return errno;
    close(file);
    return 0;
}

std::string CreateUniqueFile(const std::string& start) {
    constexpr unsigned NameCount = 0x10000;
    unsigned number = std::random_device{}();
    for (unsigned tries = 0; tries < NameCount; ++tries, ++number) {
        char digits[5];
        std::snprintf(digits, sizeof digits, "%04X", number % NameCount);
        std::string path = start + digits + ".tmp";
        const int error = CreateNew(path);
        if (error == 0)
            return path;
        if (error != EEXIST && error != EINTR)
            break;
    }
    return {};
}

void DeleteAndWait(const std::string& path) {
    using namespace std::chrono_literals;
    constexpr int MostChecks = 1000; // a second: network file systems may list a deleted file for a while
    if (unlink(path.c_str()) != 0)
        return;
    for (int check = 0; check < MostChecks && FileExists(path); ++check)
        std::this_thread::sleep_for(1ms);
}

} // namespace

std::string NativePath(std::string_view text) {
    if (IsOfAnotherSystem(text) || text.find('\0') != std::string_view::npos)
        throw Fault::PathNotFound();
    std::string path(text);
    for (char& c : path) {
        if (c == '\\')
            c = Separator;
    }
    return path;
}

std::string FileNameFromPath(std::string_view path) {
    const std::size_t separator = path.find_last_of(Separators);
    return std::string(separator == std::string_view::npos ? path : path.substr(separator + 1));
}

std::string SiblingPath(std::string_view path, std::string_view name) {
    const std::size_t folder = path.size() - FileNameFromPath(path).size();
    return std::string(path.substr(0, folder)).append(name);
}

std::optional<std::string> ExistingFile(std::string_view path) {
    if (IsOfAnotherSystem(path) || path.find('\0') != std::string_view::npos)
        return std::nullopt;
    const std::string name = FileNameFromPath(path);
    if (name.empty() || IsHidden(name))
        return std::nullopt;
    const std::string native = NativePath(path);
    if (IsRegularFile(native))
        return native;
    return ListedFile(native.substr(0, native.size() - name.size()), name);
}

bool FileExists(std::string_view path) {
    return ExistingFile(path).has_value();
}

std::string GetTempDir() {
    std::error_code error;
    const std::string folder = std::filesystem::temp_directory_path(error).string();
    return WithSeparator(error || folder.empty() ? "/tmp" : folder);
}

std::string GetTempFile(bool keep, std::string_view prefix, std::string_view folder) {
    if (IsOfAnotherSystem(folder) || folder.empty())
        return {};
    std::string path = CreateUniqueFile(WithSeparator(NativePath(folder)) + std::string(prefix));
    if (!keep && !path.empty())
        DeleteAndWait(path);
    return path;
}

} // namespace tracelet
