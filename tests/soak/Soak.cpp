#include "soak/Soak.h"

#include "support/Wait.h"

#include <algorithm>
#include <cstddef>
#include <ostream>

namespace velmora::soak {

namespace {

using namespace support;
using namespace std::chrono_literals;
using Kind = Action::Kind;

constexpr int players = 4;
/// Only a failure ever waits this long; how long a good one took is among the figures.
constexpr std::chrono::milliseconds calmLimit = 20s;
constexpr int roundsToRest = 6;
constexpr std::size_t linesKept = 80;

bool isOnMixer(Kind kind) {
    return kind < Kind::open;
}

} // namespace

Soak::Soak(const SoakOptions& options, std::ostream& log)
    : options_(options), log_(log), dice_(options.seed, options.faults, options.hasWindow),
      world_(players), stage_(players, options.isPatient),
      program_(stage_.session(), options.hasWindow),
      mixer_(stage_.session().environment().at("DBUS_SESSION_BUS_ADDRESS")) {
    if (options.hasWindow) {
        window_.emplace(program_.environment());
    }
    program_.launch();
}

bool Soak::run() {
    if (!waitUntil([this] { return mixer_.run({"status"}).status == 0; })) {
        find({"it does not answer"}, "at its start");
    }
    const auto until =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(
                           std::chrono::duration<double, std::ratio<60>>(options_.minutes));
    while (!hasFailed() && Clock::now() < until) {
        round();
        if (!hasFailed() && ++figures_.rounds % roundsToRest == 0) {
            rest();
        }
    }
    if (!hasFailed()) {
        end();
    }
    figures_.slowestAnswer = mixer_.slowestAnswer();
    figures_.tell(log_, options_.seed);
    return !hasFailed();
}

void Soak::note(const std::string& line) {
    latest_.push_back(line);
    if (latest_.size() > linesKept) {
        latest_.pop_front();
    }
    if (options_.isTold) {
        log_ << line << std::endl;
    }
}

void Soak::listen() {
    stage_.startRecorders();
    listenedFrom_ = Clock::now();
}

void Soak::round() {
    listen();
    note("round " + std::to_string(figures_.rounds));
    allowed_ = Allowed();
    allowed_.add(world_);
    burst();
    if (!hasFailed()) {
        calm();
    }
}

void Soak::burst() {
    for (int left = dice_.between(2, 12); left > 0 && !hasFailed(); --left) {
        act(dice_.next(world_));
        // Most follow at once, some a while later.
        const bool isSlow = dice_.between(0, 4) == 0;
        pause(std::chrono::milliseconds(dice_.between(0, isSlow ? 1200 : 60)));
    }
    if (!world_.isUp() && !hasFailed()) {
        act({.kind = Kind::restore});
    }
}

void Soak::act(Action action) {
    if (!isOnMixer(action.kind)) {
        stage_.perform(action, world_);
    }
    if (action.kind == Kind::restore) {
        listen(); // their recorders have ended with the services
    }
    const std::chrono::duration<double> since = Clock::now() - listenedFrom_;
    note(std::to_string(since.count()).substr(0, 5) + " s  " + describe(action));
    ++figures_.done[action.kind];
    if (!world_.isUp() || action.kind == Kind::killDaemon || action.kind == Kind::killManager) {
        allowed_.addDirect(world_);
    }
    if (isOnMixer(action.kind)) {
        actOnMixer(action);
    } else {
        follow(world_, action);
    }
    allowed_.add(world_);
}

void Soak::actOnMixer(const Action& action) {
    if (action.kind == Kind::add) {
        waitUntilOffered(action.word);
    }
    if (action.kind == Kind::savePreset && world_.isInMix(guitar)) {
        waitUntilOffered(guitar, world_.hasGuitar);
    }
    if (action.kind == Kind::applyPreset) {
        for (const Player& player : world_.players) {
            if (player.isPlaying()) {
                waitUntilOffered(player.word());
            }
        }
        if (world_.hasGuitar) {
            waitUntilOffered(guitar);
        }
    }
    if (workWindow(action)) {
        return;
    }
    follow(world_, action);
    allowed_.add(world_);
    const Said said = mixer_.perform(action, dice_.between(0, 1) == 1);
    const bool mayRefuse = action.kind == Kind::start && !world_.isRunning;
    if (said.status != 0 && !(mayRefuse && said.status == 1)) {
        find({"status " + std::to_string(said.status) + ": " + said.error},
             "after " + describe(action));
    }
    if (!world_.isRunning) {
        adopt();
    }
}

/// False when it is to be done by a command.
bool Soak::workWindow(const Action& action) {
    if (!window_ || !WindowHand::knows(action, world_) ||
        (!WindowHand::isAlone(action.kind) && dice_.between(0, 1) == 1)) {
        return false;
    }
    const World before = world_;
    follow(world_, action);
    allowed_.add(world_);
    if (!window_->perform(action, before)) {
        find({"the window cannot be worked"}, "after " + describe(action));
    }
    if (!world_.isRunning) {
        adopt();
    }
    return true;
}

void Soak::waitUntilOffered(const std::string& word, bool isOffered) {
    const bool isSo = waitUntil([&] {
        const auto offers = mixer_.json({"available"});
        return isOffered == std::ranges::any_of(offers, [&](const nlohmann::json& one) {
                   return one["id"] == word || one["name"] == word;
               });
    });
    if (!isSo) {
        find({word + (isOffered ? " is not offered" : " is still offered")},
             "before what depends on it");
    }
}

/// Takes over what the world does not know.
void Soak::adopt() {
    const auto status = mixer_.json({"status"});
    if (status.is_object()) {
        world_.isRunning = status.value("running", false);
    }
}

Findings Soak::settle() {
    const auto begun = Clock::now();
    Findings wrong;
    do {
        wrong = compareStatus(world_, mixer_.json({"status"}));
        const Findings sound = compareSound(world_, stage_);
        const Findings graph = compareGraph(world_, stage_.session().graph());
        wrong.insert(wrong.end(), sound.begin(), sound.end());
        wrong.insert(wrong.end(), graph.begin(), graph.end());
    } while (!wrong.empty() && Clock::now() - begun < calmLimit);
    if (wrong.empty()) {
        figures_.calms.push_back(
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begun));
    }
    return wrong;
}

void Soak::calm() {
    find(settle(), "in a calm");
    find(allowed_.intruders(world_, stage_), "in the round");
    if (!program_.process().isRunning()) {
        find({"the program has ended"}, "by itself");
    }
    if (const std::string printed = program_.printed(); !printed.empty()) {
        find({printed}, "printed");
    }
}

void Soak::rest() {
    act({.kind = Kind::stop});
    while (!world_.sources.empty() && !hasFailed()) {
        act({.kind = Kind::remove, .word = world_.sources.back()});
    }
    while (!world_.presets.empty() && !hasFailed()) {
        act({.kind = Kind::removePreset, .word = world_.presets.back().name});
    }
    pause(1500ms);
    figures_.rests.push_back(program_.figures());
    if (options_.isTold) {
        log_ << "at rest: " << figures_.rests.back().residentBytes / 1024 << " KiB, "
             << figures_.rests.back().descriptors << " descriptors" << std::endl;
    }
    find(compareGraph(world_, stage_.session().graph()), "at rest");
}

void Soak::end() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr bool countsMemory = false;
#else
    constexpr bool countsMemory = true;
#endif
    find(growth(figures_.rests, countsMemory), "over all rests");
    static_cast<void>(mixer_.run({"quit"}));
    if (program_.process().wait(patience) != 0) {
        find({"it did not end as it should"}, "at its end");
    }
    find(program_.compareSettings(world_), "afterwards");
    world_.isRunning = false;
    std::vector<std::string> left; // velmora-give-back may be at work for a moment
    static_cast<void>(support::waitUntil([&] {
        left = compareGraph(world_, stage_.session().graph());
        return left.empty();
    }));
    find(left, "afterwards");
    if (const std::string printed = program_.printed(); !printed.empty()) {
        find({printed}, "printed");
    }
}

void Soak::pause(std::chrono::milliseconds time) {
    static_cast<void>(waitUntil([] { return false; }, time));
}

void Soak::find(const Findings& findings, const std::string& when) {
    if (findings.empty()) {
        return;
    }
    if (!isFailed_) {
        log_ << "seed " << options_.seed << ", round " << figures_.rounds
             << ", what was done last:\n";
        for (const std::string& line : latest_) {
            log_ << "  " << line << '\n';
        }
    }
    isFailed_ = true;
    log_ << "found " << when << ":\n";
    for (const std::string& one : findings) {
        log_ << "  " << one << '\n';
    }
    log_ << "nodes and links at this moment:\n";
    const AudioGraph graph = stage_.session().graph();
    for (const GraphNode& node : graph.nodes()) {
        log_ << "  " << node.name << " (" << node.state << ")\n";
    }
    for (const GraphLink& link : graph.links()) {
        log_ << "  " << link.from << " -> " << link.to << '\n';
    }
    log_ << stage_.session().logTails() << std::flush;
}

} // namespace velmora::soak
