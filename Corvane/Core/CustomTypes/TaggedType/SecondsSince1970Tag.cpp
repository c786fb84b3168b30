#include <Corvane/Core/CustomTypes/TaggedType/SecondsSince1970Tag.hpp>
#include <Corvane/Platform/Dates/DateFormatter.hpp>
#include <Corvane/Platform/Dispatch/Clock.hpp>
#include <Corvane/Platform/FatalError.hpp>
#include <Corvane/Platform/Text/NumberText.hpp>

namespace corvane {

using Operations = TaggedOperations<SecondsSince1970Tag, std::uint64_t>;

SecondsSince1970 Operations::now() {
    return SecondsSince1970(Clock::current().now().time_since_epoch().count());
}

std::optional<SecondsSince1970> Operations::fromOptional(std::optional<double> timeInterval) {
    return timeInterval.transform([](double seconds) { return SecondsSince1970(seconds); });
}

std::optional<SecondsSince1970> Operations::fromOptionalNumber(const std::optional<JSONNumber>& number) {
    return number.transform([](const JSONNumber& present) { return SecondsSince1970(present.doubleValue()); });
}

std::optional<SecondsSince1970> Operations::fromResponseTimeStampString(std::optional<std::string_view> text) {
    const auto date = DateFormatter::httpDate().date(text);
    if (!date || *date < Date()) return std::nullopt;
    return SecondsSince1970(date->time_since_epoch().count());
}

void Operations::stopForImpossible(double timeInterval) {
    fatalError("There is no timestamp " + numberText(timeInterval) + " seconds since 1970");
}

}  // namespace corvane
