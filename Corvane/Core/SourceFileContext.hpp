#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <source_location>
#include <string>
#include <string_view>

#include <Corvane/Core/Hasher.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Logging/LogOrigin.hpp>

namespace corvane {

/// Where something was called from: file, function and line. The operations that defer work or report a
/// programming error take one as their last argument, which is by default the place of the call, and pass it
/// on unchanged:
///
///     void reload(SourceFileContext context = SourceFileContext::current()) {
///         asyncOnMain([] { ... }, context);  // logged as the call of reload()
///     }
///
/// A small value whose copies are three words; nothing is computed until it is printed or hashed.
class CORVANE_EXPORT SourceFileContext {
  public:
    /// The place of the call that names this as a default argument.
    [[nodiscard]] static constexpr SourceFileContext current(
        std::source_location where = std::source_location::current()) noexcept {
        return where;
    }

    /// A place known to the compiler; its function is printed by its plain name with parentheses, "load()".
    constexpr SourceFileContext(std::source_location where) noexcept  // NOLINT(google-explicit-constructor)
        : where_(where), line_(where.line()) {}

    /// A place given in texts, which must live as long as any copy of it (they are meant to be literals) and
    /// are printed as they stand; a null one is empty.
    constexpr SourceFileContext(const char* file, const char* function, std::uint64_t line) noexcept
        : file_(file != nullptr ? file : ""), function_(function != nullptr ? function : ""), line_(line) {}

    /// The path of the file as the compiler was given it.
    [[nodiscard]] constexpr std::string_view file() const noexcept {
        return function_ != nullptr ? file_ : where_.file_name();
    }

    /// The last component of the path, with its extension.
    [[nodiscard]] constexpr std::string_view fileName() const noexcept {
        const std::string_view path = file();
        return path.substr(path.rfind('/') + 1);
    }

    [[nodiscard]] std::string function() const;

    [[nodiscard]] constexpr std::uint64_t line() const noexcept { return line_; }

    /// The place for a log entry: as the compiler gave it, or the texts.
    [[nodiscard]] constexpr LogOrigin origin() const noexcept {
        return function_ != nullptr ? LogOrigin(file_, function_, line_) : LogOrigin(where_);
    }

    /// "function load()\n\t\tin: Loader.cpp:42".
    [[nodiscard]] std::string description() const;

    /// Feeds the file, the function and the line in decimal, each as a text.
    void hash(Hasher& hasher) const;

    /// Deliberately compares the two hashes with seed 0 and not the fields.
    friend bool operator==(const SourceFileContext& a, const SourceFileContext& b) {
        return a.hashValue() == b.hashValue();
    }

  private:
    friend struct std::hash<SourceFileContext>;

    [[nodiscard]] std::uint64_t hashValue() const;

    union {
        std::source_location where_;
        const char* file_;
    };

    const char* function_ = nullptr;  // null: `where_` is the place
    std::uint64_t line_;
};

}  // namespace corvane

template <>
struct std::hash<corvane::SourceFileContext> {
    [[nodiscard]] std::size_t operator()(const corvane::SourceFileContext& context) const {
        return context.hashValue();
    }
};
