// FXParamsStore.h: the effect settings of all sources, and the bytes in which they are kept.
#pragma once

#include "effects/FXParams.h"
#include "platform/DefaultsStore.h"

#include <map>
#include <optional>
#include <string>

namespace velmora {

/// Effect settings by source id; only those that are not neutral.
///
/// A dragged control changes one entry many times a second, so the text of each entry is kept: a
/// change encodes that entry alone.
///
/// Threads: one owner.
class FXParamsStore {
public:
    FXParamsStore() = default;
    /// Empty unless the whole can be read.
    explicit FXParamsStore(const Bytes& kept);

    [[nodiscard]] const std::map<std::string, FXParams>& params() const { return params_; }
    /// A neutral value removes the entry.
    void set(const std::string& id, const FXParams& params);

    /// A JSON object: source id to effect settings. None when an entry cannot be written as JSON.
    [[nodiscard]] std::optional<Bytes> encoded() const;

private:
    std::map<std::string, FXParams> params_;
    /// As members of the JSON object; none = cannot be written.
    std::map<std::string, std::optional<std::string>> members_;
};

} // namespace velmora
