#include "platform/pipewire/keep/LinkSet.h"

#include <algorithm>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

/// A session manager that was started again sets the devices' formats anew. The daemon (0.3.65)
/// then leaves some of their links paused for good: of a pair, one side falls silent.
constexpr auto startsWithin = 500ms;

} // namespace

/// One link. Dead once the daemon has refused or removed it.
class LinkSet::Made {
public:
    Made(ProxyHandle proxy, const std::function<void()>& changed)
        : changed_(changed), proxy_(std::move(proxy)) {
        static constexpr pw_proxy_events events = [] {
            pw_proxy_events made{};
            made.version = PW_VERSION_PROXY_EVENTS;
            made.removed = [](void* self) { static_cast<Made*>(self)->die(); };
            made.error = [](void* self, int, int, const char*) { static_cast<Made*>(self)->die(); };
            return made;
        }();
        static constexpr pw_link_events linkEvents = [] {
            pw_link_events made{};
            made.version = PW_VERSION_LINK_EVENTS;
            made.info = [](void* self, const pw_link_info* info) {
                static_cast<Made*>(self)->onInfo(*info);
            };
            return made;
        }();
        if (proxy_) {
            pw_proxy_add_listener(proxy_.get(), hook_.get(), &events, this);
            auto* const link = reinterpret_cast<pw_link*>(proxy_.get());
            pw_link_add_listener(link, linkHook_.get(), &linkEvents, this);
        }
    }

    [[nodiscard]] bool isDead() const { return isDead_ || !proxy_; }
    [[nodiscard]] bool isActive() const { return isActive_; }

private:
    void die() {
        isDead_ = true;
        changed_();
    }

    void onInfo(const pw_link_info& info) {
        isActive_ = info.state == PW_LINK_STATE_ACTIVE;
        changed_();
    }

    const std::function<void()>& changed_;
    ProxyHandle proxy_;
    Hook hook_;
    Hook linkHook_;
    bool isDead_ = false;
    bool isActive_ = false;
};

LinkSet::LinkSet(Connection& connection,
                 const Graph& graph,
                 Lifetime lifetime,
                 std::function<void()> changed)
    : connection_(connection), graph_(graph), lifetime_(lifetime), changed_(std::move(changed)) {
}

LinkSet::~LinkSet() = default;

void LinkSet::clear() {
    links_.clear();
}

std::optional<LinkSet::Clock::time_point> LinkSet::apply(const std::set<WantedLink>& wanted,
                                                         Clock::time_point now) {
    std::erase_if(links_, [&](const auto& one) { return !wanted.contains(one.first); });
    std::optional<Clock::time_point> comeAgain;
    for (const WantedLink& link : wanted) {
        if (const auto due = keep(link, links_[link], now)) {
            comeAgain = std::min(comeAgain.value_or(*due), *due);
        }
    }
    return comeAgain;
}

/// Returns when to look at the link again.
std::optional<LinkSet::Clock::time_point>
LinkSet::keep(const WantedLink& wanted, Entry& entry, Clock::time_point now) {
    const bool isThere = entry.link && !entry.link->isDead();
    if (!isThere || entry.link->isActive() || !areBothRunning(wanted)) {
        entry.stalledSince.reset();
    } else if (!entry.stalledSince) {
        entry.stalledSince = now;
    }
    const bool isStalled = entry.stalledSince && now >= *entry.stalledSince + startsWithin;
    if (isThere && !isStalled) {
        entry.attempts.lasts(now);
        return entry.stalledSince.transform([](auto since) { return since + startsWithin; });
    }
    const auto due = entry.attempts.next();
    if (!due || *due > now) {
        return due;
    }
    entry.attempts.made(now);
    entry.stalledSince.reset();
    entry.link.reset(); // two links between the same ports are refused
    entry.link = std::make_unique<Made>(findOrRequest(wanted, isStalled), changed_);
    return std::nullopt;
}

bool LinkSet::areBothRunning(const WantedLink& wanted) const {
    const auto isRunning = [this](Serial port) {
        const Node* const node = graph_.nodeOfPort(port);
        return node != nullptr && node->isRunning;
    };
    return isRunning(wanted.output) && isRunning(wanted.input);
}

ProxyHandle LinkSet::findOrRequest(const WantedLink& wanted, bool isReplacing) {
    Properties properties = {{PW_KEY_LINK_OUTPUT_PORT, std::to_string(wanted.outputId)},
                             {PW_KEY_LINK_INPUT_PORT, std::to_string(wanted.inputId)}};
    if (lifetime_ == Lifetime::lingering) {
        properties[PW_KEY_OBJECT_LINGER] = "true";
        const Link* const present = graph_.linkBetween(wanted.output, wanted.input);
        if (present != nullptr && !isReplacing) {
            return connection_.bindGlobal(present->id, PW_TYPE_INTERFACE_Link, PW_VERSION_LINK);
        }
        if (present != nullptr) {
            connection_.destroyGlobal(present->id);
        }
    }
    return connection_.create("link-factory", PW_TYPE_INTERFACE_Link, PW_VERSION_LINK, properties);
}

} // namespace velmora::pipewire
