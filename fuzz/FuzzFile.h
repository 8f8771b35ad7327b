/// A file in the folder for temporary files that holds some bytes, and goes with the object.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>

#include "foundation/DString.h"

class FuzzFile {
public:
    FuzzFile(char const *extension, std::uint8_t const *bytes, std::size_t size)
    {
        static std::string const own = std::to_string(std::random_device()());
        stem = std::filesystem::temp_directory_path() / ("vodrel-fuzz-" + own);
        native = stem.string() + extension;
        if (std::FILE *const file = std::fopen(native.c_str(), "wb")) {
            if (size > 0) std::fwrite(bytes, 1, size, file);
            std::fclose(file);
        }
    }
    FuzzFile(FuzzFile const &) = delete;
    FuzzFile &operator=(FuzzFile const &) = delete;
    ~FuzzFile()
    {
        std::error_code ignored;
        std::filesystem::remove(native, ignored);
    }

    /// The name as the library takes it, without extension.
    DString Name() const
    {
        std::string system = "Z:" + stem.string();
        for (char &c : system) {
            if (c == '/') c = '\\';
        }
        return DString(system.c_str());
    }

private:
    std::filesystem::path stem;
    std::string native;
};
