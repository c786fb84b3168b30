#pragma once

namespace corvane {

struct FileReadingOptions {
    /// Leaves the file out of the system's file cache afterwards, for what is read once.
    bool uncached = false;

    friend bool operator==(const FileReadingOptions&, const FileReadingOptions&) = default;
};

}  // namespace corvane
