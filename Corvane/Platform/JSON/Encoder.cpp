#include <utility>

#include <Corvane/Platform/JSON/KeyedEncodingContainer.hpp>
#include <Corvane/Platform/JSON/UnkeyedEncodingContainer.hpp>

namespace corvane {

using detail::CodingStep;

// Encoder

KeyedEncodingContainer Encoder::container() {
    return {output_, path_, claim()};
}

UnkeyedEncodingContainer Encoder::unkeyedContainer() {
    return {output_, path_, claim()};
}

bool Encoder::claim() {
    if (isUsed_) output_.fail("A second value was encoded", path_);
    return !std::exchange(isUsed_, true);
}

// KeyedEncodingContainer

template <class Place>
KeyedEncodingContainer::KeyedEncodingContainer(detail::JSONOutput& output, const Place& place, bool isWanted)
    : scope_(output, place) {
    if (isWanted && output.openDictionary(scope_.path())) scope_.setOpen();
}

KeyedEncodingContainer::~KeyedEncodingContainer() {
    if (scope_.isInnermost()) scope_.output().closeDictionary();
}

bool KeyedEncodingContainer::start(const CodingStep& step) {
    if (!scope_.isInnermost()) return false;
    scope_.output().startMember(step.key, &step);
    return true;
}

void KeyedEncodingContainer::encodeNil(std::string_view key) {
    if (start(CodingStep::to(scope_.path(), key))) scope_.output().writeNull();
}

KeyedEncodingContainer KeyedEncodingContainer::nestedContainer(std::string_view key) {
    const auto step = CodingStep::to(scope_.path(), key);
    return {scope_.output(), step, start(step)};
}

UnkeyedEncodingContainer KeyedEncodingContainer::nestedUnkeyedContainer(std::string_view key) {
    const auto step = CodingStep::to(scope_.path(), key);
    return {scope_.output(), step, start(step)};
}

// UnkeyedEncodingContainer

template <class Place>
UnkeyedEncodingContainer::UnkeyedEncodingContainer(detail::JSONOutput& output, const Place& place, bool isWanted)
    : scope_(output, place) {
    if (isWanted && output.openArray(scope_.path())) scope_.setOpen();
}

UnkeyedEncodingContainer::~UnkeyedEncodingContainer() {
    if (scope_.isInnermost()) scope_.output().closeArray();
}

bool UnkeyedEncodingContainer::start() {
    if (!scope_.isInnermost()) return false;
    scope_.output().startElement();
    ++count_;
    return true;
}

void UnkeyedEncodingContainer::encodeNil() {
    if (start()) scope_.output().writeNull();
}

KeyedEncodingContainer UnkeyedEncodingContainer::nestedContainer() {
    const auto step = CodingStep::to(scope_.path(), count_);
    return {scope_.output(), step, start()};
}

UnkeyedEncodingContainer UnkeyedEncodingContainer::nestedUnkeyedContainer() {
    const auto step = CodingStep::to(scope_.path(), count_);
    return {scope_.output(), step, start()};
}

}  // namespace corvane
