#include "platform/simulated/SimulatedDefaultsStore.h"
#include "presets/PresetJson.h"
#include "presets/PresetStore.h"
#include "presets/RandomPreset.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace velmora {
namespace {

using Json = nlohmann::json;

/// Damages a text the way disks, editors and other programs do.
class Mutator {
public:
    explicit Mutator(unsigned seed) : random_(seed) {}

    Random& random() { return random_; }

    std::string mutated(std::string text) {
        const auto count = below(4) + 1;
        for (std::size_t step = 0; step < count; ++step) {
            text = mutatedOnce(std::move(text));
        }
        return text;
    }

private:
    std::size_t below(std::size_t limit) {
        return limit == 0 ? 0 : std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
    }

    std::string mutatedOnce(std::string text) {
        switch (below(7)) {
        case 0: // truncated
            text.resize(below(text.size() + 1));
            return text;
        case 1: // one bit flipped
            if (!text.empty()) {
                auto& byte = text[below(text.size())];
                byte = static_cast<char>(byte ^ (1 << below(8)));
            }
            return text;
        case 2: // any byte inserted
            text.insert(text.begin() + static_cast<std::ptrdiff_t>(below(text.size() + 1)),
                        static_cast<char>(below(256)));
            return text;
        case 3: // a piece cut out
            text.erase(below(text.size() + 1), below(20));
            return text;
        case 4: // a piece repeated elsewhere
            text.insert(below(text.size() + 1), text.substr(below(text.size() + 1), below(60)));
            return text;
        case 5: // a token put in
            text.insert(below(text.size() + 1), tokens_[below(tokens_.size())]);
            return text;
        default:
            return withSwappedValue(std::move(text));
        }
    }

    /// One value anywhere in the document becomes one of any type.
    std::string withSwappedValue(std::string text) {
        auto json = Json::parse(text, nullptr, false);
        if (json.is_discarded()) {
            return text;
        }
        auto* value = &json;
        while (value->is_structured() && !value->empty() && below(6) != 0) {
            value = &*std::next(value->begin(), static_cast<std::ptrdiff_t>(below(value->size())));
        }
        *value = values_[below(values_.size())];
        return json.dump(-1, ' ', false, Json::error_handler_t::replace);
    }

    Random random_;
    std::array<std::string, 12> tokens_{
        "[", "]", "{", "}", ",", ":", "\"", "null", "-", "1e999", "\\ud800", "\xEF\xBB\xBF"};
    std::array<Json, 12> values_{Json(nullptr),
                                 Json(true),
                                 Json(0),
                                 Json(-1),
                                 Json(1e300),
                                 Json(18446744073709551615U),
                                 Json(0.5),
                                 Json(""),
                                 Json("app"),
                                 Json("f81d4fae-7dec-41d0-a765-00a0c91e6bf6"),
                                 Json::array(),
                                 Json::object()};
};

std::string randomDocument(Random& random) {
    return encodePresets(std::vector{randomPreset(random), randomPreset(random)}).value();
}

TEST(PresetJsonFuzz, WhateverIsReadCanBeWrittenAndReadAgain) {
    Mutator mutator(20240229);
    int readable = 0;
    constexpr int rounds = 20'000;
    std::string document;
    for (int round = 0; round < rounds; ++round) {
        if (round % 100 == 0) {
            document = randomDocument(mutator.random());
        }

        const auto decoded = decodePresets(mutator.mutated(document));

        if (decoded) {
            ++readable;
            const auto encoded = encodePresets(*decoded);
            ASSERT_TRUE(encoded) << "round " << round;
            ASSERT_EQ(decodePresets(*encoded), decoded) << "round " << round;
        }
    }
    EXPECT_GT(readable, rounds / 100) << "the damage is too great to test anything";
    EXPECT_LT(readable, rounds - rounds / 100) << "the damage is too small to test anything";
}

TEST(PresetJsonFuzz, BytesThatWereNeverJsonAreNotRead) {
    Mutator mutator(7);
    std::uniform_int_distribution<int> anyByte(0, 255);
    for (int round = 0; round < 5'000; ++round) {
        std::string bytes(static_cast<std::size_t>(round % 200), '\0');
        std::ranges::generate(bytes, [&] { return static_cast<char>(anyByte(mutator.random())); });

        EXPECT_EQ(decodePresets(bytes), std::nullopt);
    }
}

TEST(PresetJsonFuzz, AStoreOverDamagedBytesWorksAndLosesNoneOfThem) {
    Mutator mutator(99);
    const auto document = randomDocument(mutator.random());
    for (int round = 0; round < 2'000; ++round) {
        const auto text = mutator.mutated(document);
        const Bytes bytes(text.begin(), text.end());
        SimulatedDefaultsStore defaults;
        defaults.set("presets", bytes);

        PresetStore store(defaults);
        const auto before = store.presets().size();
        store.save({.id = Uuid::random(), .name = "after the damage"});

        const PresetStore next(defaults);
        EXPECT_EQ(next.presets(), store.presets());
        EXPECT_EQ(next.presets().size(), before + 1);
        EXPECT_EQ(defaults.read<Bytes>("presets.unreadable"),
                  decodePresets(text) ? std::nullopt : std::optional(bytes));
    }
}

} // namespace
} // namespace velmora
