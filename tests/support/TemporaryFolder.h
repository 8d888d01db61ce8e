#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <stdlib.h>
#include <string>
#include <string_view>
#include <vector>

namespace tracelet {

/// A folder of the test's own, removed with all that is in it when the test ends.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "tracelet-test-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
        path = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::string& Path() const { return path; }

    /// Path of `name` in the folder.
    [[nodiscard]] std::string operator/(std::string_view name) const {
        return path + "/" + std::string(name);
    }

    /// Writes a file into the folder and returns its path.
    std::string Write(std::string_view name, std::string_view content = {}) const {
        std::ofstream(*this / name, std::ios::binary) << content;
        return *this / name;
    }

    [[nodiscard]] std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path))
            names.push_back(entry.path().filename().string());
        return names;
    }

private:
    std::string path;
};

/// The bytes of a file; empty when it cannot be read.
[[nodiscard]] inline std::string ContentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The description of what `action` raises; empty when it raises nothing.
template <typename Action>
[[nodiscard]] std::string FaultOf(Action action) {
    try {
        action();
        return {};
    } catch (const std::exception& fault) {
        return fault.what();
    }
}

[[nodiscard]] inline std::string AsText(const std::vector<std::byte>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace tracelet
