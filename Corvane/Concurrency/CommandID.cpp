#include <fmt/compile.h>
#include <fmt/format.h>

#include <Corvane/Concurrency/CommandID.hpp>

namespace corvane {

std::string CommandID::description() const {
    if (const auto* custom = std::get_if<commandIDCases::CustomID>(&case_)) {
        return fmt::format(FMT_COMPILE("customID(\"{}\")"), custom->name);
    }
    return fmt::format(FMT_COMPILE("hashID({})"), std::get<commandIDCases::HashID>(case_).hash);
}

void CommandID::hash(Hasher& hasher) const {
    hasher.combine(isCustomID() ? "0" : "1");
    if (const auto* custom = std::get_if<commandIDCases::CustomID>(&case_)) {
        hasher.combine(custom->name);
    } else {
        hasher.combine(fmt::format_int(std::get<commandIDCases::HashID>(case_).hash).c_str());
    }
}

}  // namespace corvane
