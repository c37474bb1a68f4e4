#include "platform/sqlite/StoreValues.h"

#include "platform/sqlite/DefaultsCoding.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace velmora {

namespace {

/// As stored: a number that is not a number equals itself there.
bool isSame(const DefaultsValue& one, const DefaultsValue& other) {
    return one == other ||
           (one.index() == other.index() && encode(one).bytes == encode(other).bytes);
}

} // namespace

std::optional<DefaultsValue> StoreValues::get(std::string_view key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

bool StoreValues::set(std::string_view key, DefaultsValue value) {
    const auto known = values_.find(key);
    if (known == values_.end()) {
        pending_.try_emplace(std::string(key));
        values_.emplace(key, std::move(value));
        return true;
    }
    if (known->second == value) {
        return pending_.contains(key);
    }
    DefaultsValue before = std::exchange(known->second, std::move(value));
    pending_.try_emplace(std::string(key), std::move(before));
    return true;
}

bool StoreValues::remove(std::string_view key) {
    const auto known = values_.find(key);
    if (known == values_.end()) {
        return pending_.contains(key);
    }
    pending_.try_emplace(std::string(key), std::move(known->second));
    values_.erase(known);
    return true;
}

bool StoreValues::meet(const StoredValues& stored) {
    bool differs = false;
    for (const auto& [key, value] : stored) {
        if (apart_.contains(key) || isBelieved(key, value)) {
            continue;
        }
        const auto pending = pending_.find(key);
        if (pending == pending_.end()) {
            apart_.emplace(key, apartRow(key, stored));
            values_.insert_or_assign(key, value);
            differs = true;
        } else if (const auto own = values_.find(key);
                   own != values_.end() && isSame(own->second, value)) {
            pending_.erase(pending); // somebody else has set the same
        } else {
            apart_.emplace(key, apartRow(key, stored));
            differs = true;
        }
    }
    for (const auto& [key, value] : values_) {
        if (!stored.contains(key)) {
            pending_.try_emplace(key);
        }
    }
    return differs;
}

std::vector<StoredRow> StoreValues::rowsOfSuccessor(std::vector<StoredRow> salvaged) const {
    // A row that was read and is held no more was removed, whatever the old file still has of it.
    std::erase_if(salvaged, [this](const StoredRow& row) {
        const bool isApart = std::ranges::any_of(apart_, [&row](const auto& one) {
            return one.first == row.key || one.second == row.key;
        });
        return !isApart && decode(static_cast<CodedValue::Type>(row.type), row.value).has_value();
    });
    for (const auto& [key, value] : values_) {
        if (!apart_.contains(key)) {
            CodedValue coded = encode(value);
            salvaged.push_back({.key = key,
                                .type = static_cast<std::int64_t>(coded.type),
                                .value = std::move(coded.bytes)});
        }
    }
    return salvaged;
}

Status StoreValues::writeTo(const Write& write) const {
    Status status = statusOk;
    for (auto entry = pending_.begin(); entry != pending_.end() && status == statusOk; ++entry) {
        const std::string& key = entry->first;
        const auto apart = apart_.find(key);
        const auto value = values_.find(key);
        status = write(apart == apart_.end() ? key : apart->second,
                       value == values_.end() ? nullptr : &value->second);
    }
    return status;
}

bool StoreValues::isBelieved(const std::string& key, const DefaultsValue& value) const {
    if (const auto pending = pending_.find(key); pending != pending_.end()) {
        return pending->second && isSame(*pending->second, value);
    }
    const auto known = values_.find(key);
    return known != values_.end() && isSame(known->second, value);
}

std::string StoreValues::apartRow(const std::string& key, const StoredValues& stored) const {
    const std::string first = key + ".unsaved";
    std::string row = first;
    for (int copy = 2; stored.contains(row) || values_.contains(row); ++copy) {
        row = first + "." + std::to_string(copy);
    }
    return row;
}

} // namespace velmora
