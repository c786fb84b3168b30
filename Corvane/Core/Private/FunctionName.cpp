#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

#include <Corvane/Core/Private/FunctionName.hpp>

namespace corvane {

namespace {

bool isIdentifier(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' ||
           static_cast<unsigned char>(c) >= 0x80;
}

/// Reads one signature from left to right, remembering the innermost function met so far.
class SignatureReader {
  public:
    explicit SignatureReader(std::string_view text) noexcept : text_(text) {}

    /// The plain name without parentheses; absent when there is none or the brackets do not match.
    std::optional<std::string> read() {
        while (at_ < text_.size()) {
            if (atEndOfDeclarator()) break;
            if (!step()) return std::nullopt;
            if (nested_) return nested_;
        }
        if (!function_.empty()) return function_;
        if (sawLambda_) return "lambda";
        return std::nullopt;
    }

  private:
    [[nodiscard]] bool startsWith(std::string_view prefix) const noexcept {
        return text_.substr(at_).starts_with(prefix);
    }

    [[nodiscard]] char peek() const noexcept { return at_ < text_.size() ? text_[at_] : '\0'; }

    /// Template arguments follow in brackets at the very end, a trailing return type after an arrow.
    [[nodiscard]] bool atEndOfDeclarator() const noexcept { return startsWith(" [") || startsWith("->"); }

    bool step() {
        const char c = peek();
        if (c == '~') {
            ++at_;
            name_ = '~';
            name_ += readIdentifier();
        } else if (isIdentifier(c)) {
            return readWord();
        } else if (startsWith("::")) {
            at_ += 2;
            name_.clear();
        } else if (c == '<') {
            if (name_.empty()) noteScope(text_.substr(at_ + 1));
            return skipAngles();
        } else if (c == '{' || c == '[') {
            return skipBrackets();  // an unnamed namespace, an ABI tag
        } else if (c == '(') {
            return readParenthesis();
        } else {
            ++at_;
            name_.clear();
        }
        return true;
    }

    std::string_view readIdentifier() noexcept {
        const std::size_t start = at_;
        while (isIdentifier(peek()))
            ++at_;
        return text_.substr(start, at_ - start);
    }

    bool readWord() {
        const std::string_view word = readIdentifier();
        if (word == "operator") return readOperator();
        name_ = word;
        if (word == "decltype" || word == "noexcept" || word == "__attribute__") {
            name_.clear();
            if (startsWith(" (")) ++at_;
            if (peek() == '(') return skipBrackets();
        }
        return true;
    }

    bool readParenthesis() {
        if (!name_.empty()) {
            function_ = std::move(name_);
            name_.clear();
            inLambda_ = false;
            return skipBrackets();
        }
        const std::size_t start = at_;
        if (!skipBrackets()) return false;
        const std::string_view inside = text_.substr(start + 1, at_ - start - 2);
        if (inside.starts_with("anonymous") || inside.starts_with("unnamed") || inside.starts_with("lambda")) {
            noteScope(inside);
        } else {
            // A function that gives a pointer to a function or array is declared inside out.
            nested_ = SignatureReader(inside).read();
        }
        return true;
    }

    /// A scope without a name: "lambda(int)" with GCC, "anonymous class" with Clang, or a namespace.
    void noteScope(std::string_view description) noexcept {
        inLambda_ = description.starts_with("lambda") || description.starts_with("anonymous class");
        sawLambda_ = sawLambda_ || inLambda_;
    }

    bool readOperator() {
        std::string name = "operator";
        if (startsWith("\"\"")) {
            at_ += 2;
            while (peek() == ' ')
                ++at_;
            name += "\"\"";
            name += readIdentifier();
        } else if (const std::string_view symbol = operatorSymbol(); !symbol.empty()) {
            at_ += symbol.size();
            name += symbol;
        } else if (peek() != ' ') {
            return true;
        } else {
            ++at_;
            return readNamedOperator();
        }
        return finishOperator(std::move(name));
    }

    [[nodiscard]] std::string_view operatorSymbol() const noexcept {
        static constexpr std::array<std::string_view, 39> longestFirst{
            "<=>", "<<=", ">>=", "->*", "()", "[]", "<<", ">>", "<=", ">=", "==", "!=", "&&",
            "||",  "++",  "--",  "+=",  "-=", "*=", "/=", "%=", "^=", "&=", "|=", "->", "<",
            ">",   "+",   "-",   "*",   "/",  "%",  "^",  "&",  "|",  "~",  "!",  "=",  ","};
        const auto* const found = std::ranges::find_if(longestFirst, [&](auto symbol) { return startsWith(symbol); });
        return found != longestFirst.end() ? *found : std::string_view();
    }

    /// `new`, `delete`, `co_await` and conversions, behind the blank.
    bool readNamedOperator() {
        const std::size_t start = at_;
        const std::string_view word = readIdentifier();
        if (word == "new" || word == "delete" || word == "co_await") {
            std::string name = "operator ";
            name += word;
            if (startsWith(" []")) ++at_;
            if (startsWith("[]")) {
                at_ += 2;
                name += "[]";
            }
            return finishOperator(std::move(name));
        }
        at_ = start;
        return readConversion();
    }

    /// The target type may hold parentheses of its own: the parameter list is the first that no other
    /// declarator follows.
    bool readConversion() {
        std::string name = "operator ";
        while (at_ < text_.size()) {
            const std::size_t start = at_;
            if (peek() == '<') {
                if (!skipAngles()) return false;
            } else if (peek() == '(' || peek() == '[') {
                const bool isParenthesis = peek() == '(';
                if (!skipBrackets()) return false;
                if (isParenthesis && peek() != '(' && peek() != '[') {
                    at_ = start;
                    return finishOperator(std::move(name));
                }
            } else {
                ++at_;
                // The compilers do not agree on the blank before a declarator.
                if (text_[start] == ' ' && (peek() == '*' || peek() == '&')) continue;
            }
            name += text_.substr(start, at_ - start);
        }
        return false;
    }

    bool finishOperator(std::string name) {
        const std::size_t behindName = at_;
        while (peek() == ' ')
            ++at_;
        if (peek() == '<' && !skipAngles()) return false;
        if (peek() != '(') at_ = behindName;
        if (peek() == '(' && !skipBrackets()) return false;
        if (!(inLambda_ && name == "operator()")) function_ = std::move(name);
        inLambda_ = false;
        name_.clear();
        return true;
    }

    /// Skips a character or text literal; anything else that looks like one is one character.
    void skipQuoted() noexcept {
        const char quote = text_[at_];
        std::size_t end = at_ + 1;
        while (end < text_.size() && text_[end] != quote)
            end += text_[end] == '\\' ? 2U : 1U;
        at_ = end < text_.size() ? end + 1 : at_ + 1;
    }

    bool skipBrackets() noexcept {
        int depth = 0;
        while (at_ < text_.size()) {
            const char c = text_[at_];
            if (c == '\'' || c == '"') {
                skipQuoted();
                continue;
            }
            ++at_;
            if (c == '(' || c == '[' || c == '{') ++depth;
            if ((c == ')' || c == ']' || c == '}') && --depth == 0) return true;
        }
        return false;
    }

    /// Inside round, square and curly brackets an angle is an operator; outside them it is a bracket.
    bool skipAngles() noexcept {
        int depth = 0;
        while (at_ < text_.size()) {
            const char c = text_[at_];
            if (c == '(' || c == '[' || c == '{') {
                if (!skipBrackets()) return false;
            } else if (c == '\'' || c == '"') {
                skipQuoted();
            } else if (startsWith("->")) {
                at_ += 2;
            } else {
                ++at_;
                if (c == '<') ++depth;
                if (c == '>' && --depth == 0) return true;
            }
        }
        return false;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::string name_;      // the word that a parameter list would make a function
    std::string function_;  // the innermost function so far
    std::optional<std::string> nested_;
    bool inLambda_ = false;
    bool sawLambda_ = false;
};

}  // namespace

std::string plainFunctionName(std::string_view signature) {
    auto name = SignatureReader(signature).read();
    return name ? *name + "()" : std::string(signature);
}

}  // namespace corvane
