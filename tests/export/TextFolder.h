#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace tracelet {

/// A fresh folder for the files of one test, removed with all that is in it.
class TextFolder {
public:
    TextFolder() {
        std::string pattern = testing::TempDir() + "tracelet_text_XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr)
            ADD_FAILURE() << "no folder for the test's files";
        folder = pattern;
    }
    ~TextFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    TextFolder(const TextFolder&) = delete;
    TextFolder& operator=(const TextFolder&) = delete;

    [[nodiscard]] std::string File(const std::string& name) const { return (folder / name).string(); }

    [[nodiscard]] std::string Content(const std::string& name) const {
        std::ifstream file(File(name), std::ios::binary);
        if (!file)
            ADD_FAILURE() << "no file \"" << name << "\"";
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void Fill(const std::string& name, const std::string& content) const {
        std::ofstream(File(name), std::ios::binary) << content;
    }

private:
    std::filesystem::path folder;
};

} // namespace tracelet
