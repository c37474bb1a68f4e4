// The mixer as other programs' D-Bus clients meet it.

#include "app/CommandRig.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <vector>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>

namespace velmora {
namespace {

using namespace support;
using testing::HasSubstr;
using testing::Not;

constexpr double hz = 2300;
constexpr double playedDb = -20;

class BusProgram : public CommandRig {
protected:
    /// gdbus on the mixer's object.
    [[nodiscard]] Said gdbus(const std::string& method,
                             const std::vector<std::string>& arguments = {}) const {
        std::vector<std::string> line{"gdbus",
                                      "call",
                                      "--session",
                                      "--dest",
                                      "app.velmora.Velmora",
                                      "--object-path",
                                      "/app/velmora/Velmora/Mixer",
                                      "--method",
                                      method,
                                      "--"};
        line.insert(line.end(), arguments.begin(), arguments.end());
        return run(line);
    }
    /// busctl on the mixer's interface; the words after the verb, from the member on.
    [[nodiscard]] Said busctl(const std::string& verb,
                              const std::vector<std::string>& words = {}) const {
        std::vector<std::string> line{"busctl",
                                      "--user",
                                      "--",
                                      verb,
                                      "app.velmora.Velmora",
                                      "/app/velmora/Velmora/Mixer",
                                      "app.velmora.Mixer1"};
        line.insert(line.end(), words.begin(), words.end());
        return run(line);
    }
    void call(const std::string& method, const std::vector<std::string>& arguments = {}) const {
        const Said said = gdbus("app.velmora.Mixer1." + method, arguments);
        EXPECT_EQ(said.status, 0) << method << ": " << said.error;
    }
    [[nodiscard]] std::string property(const std::string& name) const {
        return gdbus("org.freedesktop.DBus.Properties.Get", {"app.velmora.Mixer1", name}).output;
    }
};

/// Every method, property and signal with its types, whatever the order and the comments.
std::vector<std::string> members(const std::string& xml) {
    static const std::regex element(R"re(<(method|property|signal|arg|interface) [^>]*>)re");
    static const std::regex attribute(R"re((name|type|direction|access)="([^"]*)")re");
    std::vector<std::string> found;
    std::string inside;
    bool isOurs = false;
    for (std::sregex_iterator tag(xml.begin(), xml.end(), element), end; tag != end; ++tag) {
        const std::string text = tag->str();
        std::vector<std::string> attributes;
        for (std::sregex_iterator one(text.begin(), text.end(), attribute); one != end; ++one) {
            if (one->str() != "direction=\"out\"" || inside.find("signal") == inside.npos) {
                attributes.push_back(one->str());
            }
        }
        std::ranges::sort(attributes);
        std::string words = (*tag)[1];
        for (const std::string& one : attributes) {
            words += " " + one;
        }
        if ((*tag)[1] == "interface") {
            isOurs = text.find("app.velmora.Mixer1") != text.npos;
        } else if ((*tag)[1] != "arg") {
            inside = words;
        }
        if (isOurs) {
            found.push_back((*tag)[1] == "arg" ? inside + ": " + words : words);
        }
    }
    std::ranges::sort(found);
    return found;
}

TEST_F(BusProgram, IsWhatItsDescriptionSays) {
    ChildProcess mixer = headless();

    const Said introspected = gdbus("org.freedesktop.DBus.Introspectable.Introspect");
    ASSERT_EQ(introspected.status, 0) << introspected.error;
    std::string xml = std::regex_replace(introspected.output, std::regex(R"(\\n)"), "\n");
    xml = std::regex_replace(xml, std::regex(R"(\\")"), "\"");

    const auto described = members(textOf(VELMORA_BUS_DESCRIPTION));
    EXPECT_THAT(described, testing::SizeIs(testing::Gt(50U)));
    EXPECT_EQ(members(xml), described);
}

TEST_F(BusProgram, IsWorkedWholeByAnotherLanguagesClient) {
    const ToneApp app(session());
    app.play("music", hz, hz, playedDb);
    const Recorder mic(session(), microphone, {1});
    const Recorder atSpeakers(session(), speakers.name, {1});
    monitorOnTheInterface();
    ChildProcess mixer = headless();
    const std::string source = playing(app.pid());

    call("Add", {source});
    call("Start");
    EXPECT_TRUE(mic.hears(0, hz, playedDb));
    EXPECT_EQ(property("Running"), "(<true>,)\n");
    call("SetLevel", {source, "-6.0"});
    EXPECT_TRUE(mic.hears(0, hz, -26));
    EXPECT_THAT(property("Sources"), HasSubstr("'db': <-6.0>"));
    call("SetMuted", {source, "true"});
    EXPECT_TRUE(mic.isSilentAt(0, hz));
    call("SetMuted", {source, "false"});
    call("SetVolume", {"microphone", "-3.0"});
    EXPECT_TRUE(mic.hears(0, hz, -29));
    EXPECT_EQ(property("MicrophoneDb"), "(<-3.0>,)\n");
    call("SetVolumeMuted", {"microphone", "true"});
    EXPECT_TRUE(mic.isSilentAt(0, hz));
    call("SetVolumeMuted", {"microphone", "false"});
    call("SetEffects", {source, "{'level': '6', 'tone': '0'}"});
    EXPECT_TRUE(mic.hears(0, hz, -23));
    call("SetBypassed", {"true"});
    EXPECT_TRUE(mic.hears(0, hz, -29));
    call("SetBypassed", {"false"});
    call("ResetEffects", {source});
    call("SetSilenced", {source, "true"});
    EXPECT_TRUE(atSpeakers.isSilentAt(0, hz));
    EXPECT_TRUE(mic.hears(0, hz, -29));
    EXPECT_THAT(gdbus("app.velmora.Mixer1.Levels").output, HasSubstr("'" + source + "': 0.0"));
    call("SetSilenced", {source, "false"});
    call("Stop");
    EXPECT_TRUE(mic.isSilentAt(0, hz));
    call("Remove", {source});
    EXPECT_EQ(property("Sources"), "(<@aa{sv} []>,)\n");
    call("SetMonitor", {"1"});
    EXPECT_EQ(property("Monitor"), "(<''>,)\n");
    call("SavePreset", {"Evening"});
    EXPECT_EQ(property("Preset"), "(<'Evening'>,)\n");
    call("ApplyPreset", {"Evening"});
    call("ApplyNextPreset");
    call("RemovePreset", {"Evening"});
    EXPECT_EQ(property("Presets"), "(<@as []>,)\n");
    call("Quit");
    EXPECT_THAT(mixer.wait(patience), testing::Optional(0));
}

TEST_F(BusProgram, IsWorkedByTheSystemsOwnClientToo) {
    const ToneApp app(session());
    app.play("music", hz, hz, playedDb);
    const Recorder mic(session(), microphone, {1});
    monitorOnTheInterface();
    ChildProcess mixer = headless();
    const std::string source = playing(app.pid());
    const auto called = [&](const std::vector<std::string>& words) {
        const Said said = busctl("call", words);
        EXPECT_EQ(said.status, 0) << words.front() << ": " << said.error;
        return said.output;
    };
    const auto value = [&](const std::string& name) {
        return busctl("get-property", {name}).output;
    };

    called({"Add", "s", source});
    called({"Start"});
    EXPECT_TRUE(mic.hears(0, hz, playedDb));
    EXPECT_EQ(value("Running"), "b true\n");
    called({"SetLevel", "sd", source, "-6"});
    EXPECT_TRUE(mic.hears(0, hz, -26));
    called({"SetEffects", "sa{ss}", source, "1", "level", "6"});
    EXPECT_TRUE(mic.hears(0, hz, -20));
    called({"SetVolume", "sd", "microphone", "-3"});
    EXPECT_EQ(value("MicrophoneDb"), "d -3\n");
    EXPECT_THAT(called({"Levels"}), HasSubstr("\"" + source + "\" 0."));
    EXPECT_EQ(called({"Run", "as", "2", "names", "sources"}),
              "iss 0 \"velmora_tone_app\\n\" \"\"\n");
    EXPECT_THAT(busctl("call", {"SetVolume", "sd", "microphone", "7"}).error,
                HasSubstr("from -60 to 6 dB"));
    EXPECT_THAT(busctl("introspect").output,
                testing::AllOf(HasSubstr(".SetSilenced "), HasSubstr(".Presets ")));
    called({"Quit"});
    EXPECT_THAT(mixer.wait(patience), testing::Optional(0));
}

TEST_F(BusProgram, RefusesWithAnErrorOfItsOwn) {
    ChildProcess mixer = headless();

    const Said refused = gdbus("app.velmora.Mixer1.SetVolume", {"microphone", "7.0"});

    EXPECT_NE(refused.status, 0);
    EXPECT_THAT(refused.error, HasSubstr("app.velmora.Mixer1.Refused"));
    EXPECT_THAT(refused.error, HasSubstr("from -60 to 6 dB"));
    EXPECT_EQ(property("MicrophoneDb"), "(<0.0>,)\n");
}

TEST_F(BusProgram, TellsChangesOfItsProperties) {
    ChildProcess mixer = headless();
    ChildProcess monitor =
        start({"gdbus", "monitor", "--session", "--dest", "app.velmora.Velmora"}, "monitor");
    const auto seen = [&] { return textOf(home.path() / "monitor.output"); };
    EXPECT_TRUE(waitUntil([&] {
        call("SetBypassed", {"true"});
        call("SetBypassed", {"false"});
        return seen().find("Bypassed") != std::string::npos;
    }));

    call("SetVolume", {"headphones", "-6.0"});

    EXPECT_TRUE(waitUntil([&] { // with what else changed in the same moment
        return seen().find("'HeadphonesDb': <-6.0>") != std::string::npos;
    })) << seen();
}

TEST_F(BusProgram, TakesTheDesktopsActions) {
    const ToneApp app(session());
    app.play("music", hz, hz, playedDb);
    ChildProcess mixer = headless();
    call("Add", {playing(app.pid())});
    const auto act = [&](const std::string& action) {
        return run({"gdbus",
                    "call",
                    "--session",
                    "--dest",
                    "app.velmora.Velmora",
                    "--object-path",
                    "/app/velmora/Velmora",
                    "--method",
                    "org.freedesktop.Application.ActivateAction",
                    action,
                    "[]",
                    "{}"})
            .status;
    };

    EXPECT_EQ(act("on"), 0);
    EXPECT_EQ(property("Running"), "(<true>,)\n");
    EXPECT_EQ(act("off"), 0);
    EXPECT_EQ(property("Running"), "(<false>,)\n");
}

TEST_F(BusProgram, AFloodAndWrongTypesCostNoSound) {
    const ToneApp app(session());
    app.play("music", hz, hz, playedDb);
    const Recorder mic(session(), microphone, {1});
    ChildProcess mixer = headless();
    const std::string source = playing(app.pid());
    call("Add", {source});
    call("Start");
    ASSERT_TRUE(mic.hears(0, hz, playedDb));
    const std::size_t before = mic.frames();

    // As much at once as the bus lets a client ask.
    constexpr int calls = 6000;
    constexpr int atOnce = 100;
    auto bus = QDBusConnection::connectToBus(
        QString::fromStdString(session().environment().at("DBUS_SESSION_BUS_ADDRESS")), "flood");
    int refused = 0;
    std::vector<QDBusPendingCall> answers;
    for (int number = 0; number < calls; ++number) {
        const bool isWrong = number % 3 == 0;
        auto message = QDBusMessage::createMethodCall(
            "app.velmora.Velmora", "/app/velmora/Velmora/Mixer", "app.velmora.Mixer1", "SetVolume");
        if (isWrong) {
            message << 7 << QVariantMap{{"db", "loud"}};
        } else {
            message << "headphones" << -static_cast<double>(number % 12);
        }
        answers.push_back(bus.asyncCall(message));
        if (answers.size() == atOnce) {
            for (QDBusPendingCall& answer : answers) {
                answer.waitForFinished();
                refused += answer.isError() ? 1 : 0;
            }
            answers.clear();
        }
    }
    QDBusConnection::disconnectFromBus("flood");
    EXPECT_EQ(refused, calls / 3);

    ASSERT_TRUE(mic.waitForFreshSound());
    EXPECT_EQ(countBreaks(mic.all().channel(0, before), hz), 0);
    EXPECT_TRUE(mic.hears(0, hz, playedDb));
}

} // namespace
} // namespace velmora
