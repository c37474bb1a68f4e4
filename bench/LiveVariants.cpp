#include "LiveVariants.h"

#include "support/SessionDevices.h"
#include "support/Wait.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace velmora::bench {
namespace {

using support::PrivateSession;
namespace fs = std::filesystem;

constexpr const char* gatePlugin = "/usr/lib/ladspa/gate_1410.so";           // swh-plugins
constexpr const char* compressorPlugin = "/usr/lib/ladspa/sc4_1882.so";      // swh-plugins
constexpr const char* levellerPlugin = "/usr/lib/ladspa/tap_dynamics_st.so"; // tap-plugins
constexpr const char* reverbPlugin = "/usr/lib/ladspa/cmt.so";               // cmt

std::string contentOf(const fs::path& file) {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), {}};
}

Running start(const PrivateSession& session,
              const std::vector<std::string>& arguments,
              const std::string& name) {
    static int count = 0;
    const std::string log = name + "-" + std::to_string(++count);
    return {.process = session.start(arguments, log, /*takesLines=*/true),
            .answers = session.folder() / "log" / log};
}

void waitUntilRunning(const Running& variant) {
    if (!support::waitUntil([&] { return contentOf(variant.answers).contains("running"); })) {
        throw std::runtime_error("a program did not start: " + contentOf(variant.answers));
    }
}

Running startMixer(const PrivateSession& session,
                   const std::vector<PlayingApp>& apps,
                   const std::string& monitoringSelection) {
    std::vector<std::string> arguments{VELMORA_LIVE_MIXER, monitoringSelection};
    for (const PlayingApp& app : apps) {
        arguments.push_back(std::to_string(app.pid));
    }
    Running mixer = start(session, arguments, "mixer");
    waitUntilRunning(mixer);
    return mixer;
}

/// Settings as a user would take them: a gate that opens for any voice, 3:1 above -24 dB, levelling
/// towards full scale, a medium room.
std::string pluginGraph() {
    std::ostringstream text;
    text << "nodes = [";
    for (const char* side : {"gateL", "gateR"}) {
        text << " { type = ladspa name = " << side << " plugin = \"" << gatePlugin
             << "\" label = gate control = { \"LF key filter (Hz)\" = 30"
                " \"HF key filter (Hz)\" = 20000 \"Threshold (dB)\" = -60 \"Attack (ms)\" = 5"
                " \"Hold (ms)\" = 100 \"Decay (ms)\" = 100 \"Range (dB)\" = -40"
                " \"Output select (-1 = key listen, 0 = gate, 1 = bypass)\" = 0 } }";
    }
    text << " { type = ladspa name = comp plugin = \"" << compressorPlugin
         << "\" label = sc4 control = { \"Threshold level (dB)\" = -24 \"Ratio (1:n)\" = 3 } }"
            " { type = ladspa name = level plugin = \""
         << levellerPlugin << "\" label = tap_dynamics_st control = { \"Function\" = 7 } }"
         << " { type = ladspa name = verb plugin = \"" << reverbPlugin
         << "\" label = freeverb3 control = { \"Room Size\" = 0.5 \"Wet Level\" = 0.3"
            " \"Dry Level\" = 0.7 } } ] links = ["
            " { output = \"gateL:Output\" input = \"comp:Left input\" }"
            " { output = \"gateR:Output\" input = \"comp:Right input\" }"
            " { output = \"comp:Left output\" input = \"level:Input Left\" }"
            " { output = \"comp:Right output\" input = \"level:Input Right\" }"
            " { output = \"level:Output Left\" input = \"verb:Input (Left)\" }"
            " { output = \"level:Output Right\" input = \"verb:Input (Right)\" } ]"
            " inputs = [ \"gateL:Input\" \"gateR:Input\" ]"
            " outputs = [ \"verb:Output (Left)\" \"verb:Output (Right)\" ]";
    return text.str();
}

/// Of one channel; the chain makes one for each.
std::string plainGraph() {
    return "nodes = ["
           " { type = builtin name = cut label = bq_highpass control = { Freq = 80 Q = 0.7 } }"
           " { type = builtin name = low label = bq_lowshelf"
           " control = { Freq = 300 Q = 0.7 Gain = -2 } }"
           " { type = builtin name = high label = bq_highshelf"
           " control = { Freq = 3000 Q = 0.7 Gain = 2 } } ] links = ["
           " { output = \"cut:Out\" input = \"low:In\" }"
           " { output = \"low:Out\" input = \"high:In\" } ]";
}

std::string filterChain(const std::string& name, const std::string& graph) {
    std::ostringstream text;
    text << "{ name = libpipewire-module-filter-chain args = { node.description = \"" << name
         << "\" media.name = \"" << name << "\" filter.graph = { " << graph
         << " } audio.channels = 2 audio.position = [ FL FR ] node.latency = 128/48000";
    for (const char* side : {"capture", "playback"}) {
        text << ' ' << side << ".props = { node.name = \"" << name << '.' << side
             << "\" node.autoconnect = false }";
    }
    text << " } }\n";
    return text.str();
}

fs::path
writeChainFile(const PrivateSession& session, const std::string& graph, std::size_t count) {
    const fs::path file = session.folder() / ("chains-" + std::to_string(count) + ".conf");
    std::ofstream out(file);
    out << "context.properties = { log.level = 0 }\n"
           "context.spa-libs = { audio.convert.* = audioconvert/libspa-audioconvert"
           " support.* = support/libspa-support }\n"
           "context.modules = [\n"
           "{ name = libpipewire-module-rt args = { nice.level = -11 } flags = [ ifexists nofail ] "
           "}\n"
           "{ name = libpipewire-module-protocol-native }\n"
           "{ name = libpipewire-module-client-node }\n"
           "{ name = libpipewire-module-adapter }\n";
    for (std::size_t at = 0; at < count; ++at) {
        out << filterChain("chain." + std::to_string(at), graph);
    }
    out << "]\n";
    return file;
}

} // namespace

std::string Running::ask() const {
    const std::string before = contentOf(answers);
    process.send("tell");
    if (!support::waitUntil([&] { return contentOf(answers).size() > before.size(); })) {
        throw std::runtime_error("a program does not answer");
    }
    return contentOf(answers).substr(before.size());
}

void joinPorts(const PrivateSession& session, const std::string& from, const std::string& to) {
    const auto isLinked = [&] {
        try {
            support::runToEnd({"pw-link", from, to}, session.environment());
            return true;
        } catch (const std::runtime_error&) {
            return false;
        }
    };
    if (!support::waitUntil(isLinked)) {
        throw std::runtime_error("cannot link " + from + " to " + to);
    }
}

Running startMixer(const PrivateSession& session, const std::vector<PlayingApp>& apps) {
    // Channels that the device does not have: there is then no monitoring output.
    return startMixer(session, apps, support::interface4.name + "#9");
}

Running startMonitoringMixer(const PrivateSession& session, const std::vector<PlayingApp>& apps) {
    return startMixer(session, apps, support::interface4.name + "#3");
}

Running startEmptyNodes(const PrivateSession& session, const std::vector<PlayingApp>& apps) {
    Running nodes = start(session, {VELMORA_LIVE_FILTERS, std::to_string(apps.size())}, "empty");
    waitUntilRunning(nodes);
    for (std::size_t at = 0; at < apps.size(); ++at) {
        const std::string node = "empty." + std::to_string(at);
        joinPorts(session, apps[at].node + ":output_FL", node + ":left");
        joinPorts(session, apps[at].node + ":output_FR", node + ":right");
    }
    return nodes;
}

namespace {

Running startChains(const PrivateSession& session,
                    const std::vector<PlayingApp>& apps,
                    const std::string& graph) {
    Running chains =
        start(session, {"pipewire", "-c", writeChainFile(session, graph, apps.size())}, "chains");
    for (std::size_t at = 0; at < apps.size(); ++at) {
        const std::string chain = "chain." + std::to_string(at);
        for (const std::string side : {"FL", "FR"}) {
            joinPorts(session, apps[at].node + ":output_" + side, chain + ".capture:input_" + side);
            joinPorts(session,
                      chain + ".playback:output_" + side,
                      support::microphone + ":input_" + side);
        }
    }
    return chains;
}

} // namespace

Running startFilterChains(const PrivateSession& session, const std::vector<PlayingApp>& apps) {
    return startChains(session, apps, pluginGraph());
}

Running startPlainChains(const PrivateSession& session, const std::vector<PlayingApp>& apps) {
    return startChains(session, apps, plainGraph());
}

std::vector<std::string> missingPlugins() {
    std::vector<std::string> missing;
    for (const char* file : {gatePlugin, compressorPlugin, levellerPlugin, reverbPlugin}) {
        if (!fs::exists(file)) {
            missing.emplace_back(file);
        }
    }
    return missing;
}

} // namespace velmora::bench
