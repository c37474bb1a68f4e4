#include "platform/sqlite/DefaultsCoding.h"

#include <bit>

namespace velmora {

namespace {

class Writer {
public:
    void add(bool value) { bytes_.push_back(value ? 1 : 0); }
    void add(double value) { addInteger(std::bit_cast<std::uint64_t>(value)); }
    void add(const std::string& text) { bytes_.insert(bytes_.end(), text.begin(), text.end()); }
    void add(const Bytes& bytes) { bytes_ = bytes; }

    template <typename T>
    void add(const std::map<std::string, T>& map) {
        for (const auto& [key, value] : map) {
            addInteger(static_cast<std::uint32_t>(key.size()));
            add(key);
            add(value);
        }
    }

    [[nodiscard]] Bytes take() { return std::move(bytes_); }

private:
    template <typename Integer>
    void addInteger(Integer value) {
        for (std::size_t shift = 0; shift < 8 * sizeof value; shift += 8) {
            bytes_.push_back(static_cast<std::uint8_t>(value >> shift));
        }
    }

    Bytes bytes_;
};

class Reader {
public:
    explicit Reader(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

    [[nodiscard]] bool atEnd() const { return rest_.empty(); }

    bool read(bool& value) {
        if (rest_.empty() || rest_[0] > 1) {
            return false;
        }
        value = rest_[0] == 1;
        rest_ = rest_.subspan(1);
        return true;
    }

    bool read(double& value) {
        std::uint64_t pattern = 0;
        if (!readInteger(pattern)) {
            return false;
        }
        value = std::bit_cast<double>(pattern);
        return true;
    }

    bool read(std::string& key) {
        std::uint32_t length = 0;
        if (!readInteger(length) || length > rest_.size()) {
            return false;
        }
        key.assign(rest_.begin(), rest_.begin() + length);
        rest_ = rest_.subspan(length);
        return true;
    }

    template <typename T>
    bool read(std::map<std::string, T>& map) {
        while (!atEnd()) {
            std::string key;
            T value{};
            if (!read(key) || !read(value)) {
                return false;
            }
            map.insert_or_assign(std::move(key), value);
        }
        return true;
    }

private:
    template <typename Integer>
    bool readInteger(Integer& value) {
        if (rest_.size() < sizeof value) {
            return false;
        }
        value = 0;
        for (std::size_t byte = 0; byte < sizeof value; ++byte) {
            value |= static_cast<Integer>(rest_[byte]) << (8 * byte);
        }
        rest_ = rest_.subspan(sizeof value);
        return true;
    }

    std::span<const std::uint8_t> rest_;
};

template <typename T>
std::optional<DefaultsValue> decodeWhole(std::span<const std::uint8_t> bytes) {
    Reader reader(bytes);
    T value{};
    if (!reader.read(value) || !reader.atEnd()) {
        return std::nullopt;
    }
    return value;
}

} // namespace

CodedValue encode(const DefaultsValue& value) {
    static_assert(std::variant_size_v<DefaultsValue> == 6);
    Writer writer;
    std::visit([&](const auto& typed) { writer.add(typed); }, value);
    // The variant's alternatives stand in the order of the stored numbers.
    return {static_cast<CodedValue::Type>(value.index() + 1), writer.take()};
}

std::optional<DefaultsValue> decode(CodedValue::Type type, std::span<const std::uint8_t> bytes) {
    switch (type) {
    case CodedValue::Type::boolean:
        return decodeWhole<bool>(bytes);
    case CodedValue::Type::number:
        return decodeWhole<double>(bytes);
    case CodedValue::Type::string:
        return std::string(bytes.begin(), bytes.end());
    case CodedValue::Type::bytes:
        return Bytes(bytes.begin(), bytes.end());
    case CodedValue::Type::numberMap:
        return decodeWhole<NumberMap>(bytes);
    case CodedValue::Type::booleanMap:
        return decodeWhole<BooleanMap>(bytes);
    }
    return std::nullopt;
}

} // namespace velmora
