// Units.h: AudioUnits on PipeWire.
#pragma once

#include "platform/AudioUnits.h"
#include "platform/pipewire/Session.h"

namespace velmora::pipewire {

/// Threads: main. The units it makes must not outlive the session.
class Units final : public AudioUnits {
public:
    explicit Units(Session& session) : session_(session) {}

    [[nodiscard]] std::unique_ptr<OutputUnit> makeOutput() override;
    [[nodiscard]] std::unique_ptr<InputUnit> makeInput() override;
    void askForBlocksOf(std::uint32_t leastFrames) override {
        session_.askForBlocksOf(leastFrames);
    }
    [[nodiscard]] BlockReport blocks() const override { return session_.blocks(); }

private:
    Session& session_;
};

} // namespace velmora::pipewire
