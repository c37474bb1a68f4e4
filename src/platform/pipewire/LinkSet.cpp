#include "platform/pipewire/LinkSet.h"

namespace velmora::pipewire {
namespace {

/// A pair of ports that cannot be joined must not keep both sides busy forever.
constexpr int mostAttempts = 5;

} // namespace

/// One requested link. Dead once the daemon has refused or removed it.
class LinkSet::Made {
public:
    Made(Connection& connection, const WantedLink& wanted)
        : proxy_(connection.create("link-factory",
                                   PW_TYPE_INTERFACE_Link,
                                   PW_VERSION_LINK,
                                   {{PW_KEY_LINK_OUTPUT_PORT, std::to_string(wanted.outputId)},
                                    {PW_KEY_LINK_INPUT_PORT, std::to_string(wanted.inputId)}})) {
        static constexpr pw_proxy_events events = [] {
            pw_proxy_events made{};
            made.version = PW_VERSION_PROXY_EVENTS;
            made.removed = [](void* self) { static_cast<Made*>(self)->isDead_ = true; };
            made.error = [](void* self, int, int, const char*) {
                static_cast<Made*>(self)->isDead_ = true;
            };
            return made;
        }();
        if (proxy_) {
            pw_proxy_add_listener(proxy_.get(), hook_.get(), &events, this);
        }
    }

    [[nodiscard]] bool isDead() const { return isDead_ || !proxy_; }

private:
    ProxyHandle proxy_;
    Hook hook_;
    bool isDead_ = false;
};

LinkSet::LinkSet(Connection& connection) : connection_(connection) {
}

LinkSet::~LinkSet() = default;

void LinkSet::clear() {
    links_.clear();
}

void LinkSet::apply(const std::set<WantedLink>& wanted) {
    std::erase_if(links_, [&](const auto& one) { return !wanted.contains(one.first); });
    for (const WantedLink& link : wanted) {
        Entry& entry = links_[link];
        const bool isMissing = !entry.link || entry.link->isDead();
        if (isMissing && entry.attempts < mostAttempts) {
            ++entry.attempts;
            entry.link = std::make_unique<Made>(connection_, link);
        }
    }
}

} // namespace velmora::pipewire
