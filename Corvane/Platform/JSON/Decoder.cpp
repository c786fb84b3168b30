#include <utility>

#include <Corvane/Platform/JSON/KeyedDecodingContainer.hpp>
#include <Corvane/Platform/JSON/UnkeyedDecodingContainer.hpp>

namespace corvane {

using detail::CodingStep;
using ExactScope = detail::JSONCursor::ExactScope;

// Decoder

std::expected<KeyedDecodingContainer, DecodingError> Decoder::container() const {
    const ExactScope scope(*cursor_);
    cursor_->moveTo(position_);
    auto members = std::make_shared<KeyedDecodingContainer::Members>();
    if (!cursor_->listMembers(members->table, path_)) return std::unexpected(cursor_->takeError());
    return KeyedDecodingContainer(*cursor_, path_, std::move(members));
}

std::expected<UnkeyedDecodingContainer, DecodingError> Decoder::unkeyedContainer() const {
    const ExactScope scope(*cursor_);
    cursor_->moveTo(position_);
    auto elements = std::make_shared<std::vector<std::uint32_t>>();
    if (!cursor_->listElements(*elements, path_)) return std::unexpected(cursor_->takeError());
    return UnkeyedDecodingContainer(*cursor_, path_, std::move(elements));
}

bool Decoder::decodeNil() const {
    cursor_->moveTo(position_);
    return cursor_->readNull();
}

DecodingError Decoder::dataCorrupted(std::string_view problem) const {
    return detail::corruptedAt(problem, path_);
}

// KeyedDecodingContainer

std::size_t KeyedDecodingContainer::find(std::string_view key) const {
    return members_->table.find(key, members_->likely);
}

std::optional<CodingStep> KeyedDecodingContainer::moveTo(std::string_view key) const {
    const std::size_t position = find(key);
    if (position == detail::JSONMemberTable::none) {
        cursor_->failMissing(key, path_);
        return std::nullopt;
    }
    members_->likely = position + 1;
    const auto& entry = members_->table.entries()[position];
    cursor_->moveTo(entry.value);
    return CodingStep::to(path_, entry.key);
}

std::vector<std::string_view> KeyedDecodingContainer::allKeys() const {
    std::vector<std::string_view> keys;
    keys.reserve(members_->table.entries().size());
    for (const auto& entry : members_->table.entries())
        keys.push_back(entry.key);
    return keys;
}

std::expected<bool, DecodingError> KeyedDecodingContainer::decodeNil(std::string_view key) const {
    const ExactScope scope(*cursor_);
    if (!moveTo(key)) return std::unexpected(cursor_->takeError());
    return cursor_->readNull();
}

std::expected<KeyedDecodingContainer, DecodingError> KeyedDecodingContainer::nestedContainer(
    std::string_view key) const {
    auto nested = decoder(key);
    if (!nested) return std::unexpected(std::move(nested).error());
    return nested->container();
}

std::expected<UnkeyedDecodingContainer, DecodingError> KeyedDecodingContainer::nestedUnkeyedContainer(
    std::string_view key) const {
    auto nested = decoder(key);
    if (!nested) return std::unexpected(std::move(nested).error());
    return nested->unkeyedContainer();
}

std::expected<Decoder, DecodingError> KeyedDecodingContainer::decoder(std::string_view key) const {
    const ExactScope scope(*cursor_);
    const auto step = moveTo(key);
    if (!step) return std::unexpected(cursor_->takeError());
    return Decoder(*cursor_, cursor_->keep(*step));
}

std::optional<DecodingError> KeyedDecodingContainer::readMembers(std::string_view key, void* target,
                                                                 detail::JSONCursor::ReadEntry entry,
                                                                 void (*prepare)(void* target,
                                                                                 std::size_t most)) const {
    const ExactScope scope(*cursor_);
    const auto step = moveTo(key);
    if (!step) return cursor_->takeError();
    const std::size_t most = cursor_->mostMembers();
    const auto read = [&] {
        prepare(target, most);
        return cursor_->readDictionary(target, entry, &*step);
    };
    if (cursor_->readInGoodFaith(read) || read()) return std::nullopt;
    return cursor_->takeError();
}

// UnkeyedDecodingContainer

std::optional<CodingStep> UnkeyedDecodingContainer::moveToNext() const {
    const auto step = CodingStep::to(path_, index_);
    if (isAtEnd()) {
        cursor_->failAtEnd(&step);
        return std::nullopt;
    }
    cursor_->moveTo((*elements_)[index_]);
    return step;
}

std::expected<bool, DecodingError> UnkeyedDecodingContainer::decodeNil() {
    const auto step = moveToNext();
    if (!step) return std::unexpected(cursor_->takeError());
    const bool isNull = cursor_->readNull();
    if (isNull) ++index_;
    return isNull;
}

bool UnkeyedDecodingContainer::skip() noexcept {
    if (isAtEnd()) return false;
    ++index_;
    return true;
}

std::expected<Decoder, DecodingError> UnkeyedDecodingContainer::next() const {
    const auto step = moveToNext();
    if (!step) return std::unexpected(cursor_->takeError());
    return Decoder(*cursor_, cursor_->keep(*step));
}

std::expected<Decoder, DecodingError> UnkeyedDecodingContainer::decoder() {
    auto decoder = next();
    if (decoder) ++index_;
    return decoder;
}

std::expected<KeyedDecodingContainer, DecodingError> UnkeyedDecodingContainer::nestedContainer() {
    const auto decoder = next();
    if (!decoder) return std::unexpected(decoder.error());
    auto nested = decoder->container();
    if (nested) ++index_;
    return nested;
}

std::expected<UnkeyedDecodingContainer, DecodingError> UnkeyedDecodingContainer::nestedUnkeyedContainer() {
    const auto decoder = next();
    if (!decoder) return std::unexpected(decoder.error());
    auto nested = decoder->unkeyedContainer();
    if (nested) ++index_;
    return nested;
}

}  // namespace corvane
