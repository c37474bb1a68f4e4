#include "platform/pipewire/keep/MuteSink.h"

#include "platform/pipewire/view/Muting.h"

#include <algorithm>

namespace velmora::pipewire {
MuteSink::MuteSink(Connection& connection,
                   const Graph& graph,
                   LastWill& will,
                   std::function<std::string()> newName)
    : connection_(connection), graph_(graph), will_(will), newName_(std::move(newName)) {
}

MuteSink::~MuteSink() {
    for (const MutedStream& muted : muted_) {
        giveBack(connection_, graph_, muted);
    }
    forgetTargets();
}

void MuteSink::forgetTargets() {
    forget([](const MutedStream&) { return true; });
}

template <typename Predicate>
void MuteSink::forget(Predicate isPast) {
    std::erase_if(muted_, [&](const MutedStream& muted) {
        const bool goes = isPast(muted);
        if (goes) {
            will_.remove(muted.stream);
        }
        return goes;
    });
}

void MuteSink::follow(const std::vector<Serial>& streams) {
    forget([this](const MutedStream& muted) { return graph_.node(muted.stream) == nullptr; });
    const Node* const sink = sink_ ? graph_.nodeNamed(name_) : nullptr;
    if (!sink_ || (isSinkSeen_ && sink == nullptr)) {
        makeSink(streams);
        return;
    }
    isSinkSeen_ = sink != nullptr;
    if (sink == nullptr || sink->ports.empty()) {
        return; // comes with a later change of the graph
    }
    for (const Serial serial : streams) {
        if (const Node* const stream = graph_.node(serial); stream != nullptr) {
            send(*stream, sink->serial);
            removeLeftLinks(serial, sink->serial);
        }
    }
}

void MuteSink::removeLeftLinks(Serial stream, Serial sink) {
    for (const Serial link : leftLinks(graph_, stream, sink)) {
        // Once only: by a second time the id may be another object's.
        if (removedLinks_.insert(link).second) {
            connection_.destroyGlobal(graph_.links().at(link).id);
        }
    }
}

void MuteSink::makeSink(const std::vector<Serial>& streams) {
    name_ = newName_();
    isSinkSeen_ = false;
    sink_ = connection_.create("adapter",
                               PW_TYPE_INTERFACE_Node,
                               PW_VERSION_NODE,
                               {{"factory.name", "support.null-audio-sink"},
                                {"media.class", "Audio/Sink/Internal"},
                                {"node.name", name_},
                                {"node.description", "Velmora Mute"},
                                {"audio.position", targetLayout(graph_, streams)},
                                {"node.virtual", "true"},
                                {"priority.session", "0"},
                                {"priority.driver", "0"},
                                // WirePlumber 0.4.13 crashes (suspend-node.lua) when a sink
                                // goes while it is waiting to be suspended.
                                {"session.suspend-timeout-seconds", "0"},
                                // Keeps its volume out of the session manager's files.
                                {"device.routes", "1"}});
}

void MuteSink::send(const Node& stream, Serial sink) {
    if (stream.mediaClass != "Stream/Output/Audio") {
        return; // the session manager does not move it
    }
    auto known = std::ranges::find(muted_, stream.serial, &MutedStream::stream);
    if (known == muted_.end()) {
        known = muted_.insert(known, muteOf(graph_, stream, sink));
    } else if (known->sink != sink) {
        known->sink = sink; // what it names now is our own sink before this one
    } else {
        return;
    }
    will_.add(*known);
    sendToSink(connection_, *known);
}

void MuteSinks::keepOnly(const Mutes& wanted) {
    std::erase_if(sinks_, [&](const auto& one) { return !wanted.contains(one.first); });
}

void MuteSinks::follow(const Mutes& wanted, const StreamsOf& streamsOf) {
    for (const auto& [tap, process] : wanted) {
        auto& sink = sinks_[tap];
        if (!sink) {
            sink = std::make_unique<MuteSink>(connection_, graph_, will_, newName_);
        }
        sink->follow(streamsOf(process));
    }
}

void MuteSinks::forgetTargets() {
    for (const auto& [tap, sink] : sinks_) {
        sink->forgetTargets();
    }
}

} // namespace velmora::pipewire
