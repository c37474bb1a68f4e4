// TapDevices.h: taps, the private devices that read them, and the callbacks on those.
#pragma once

#include "platform/AudioHardware.h"
#include "platform/pipewire/RouteHold.h"
#include "platform/pipewire/Session.h"
#include "platform/pipewire/TapPart.h"

#include <map>
#include <memory>
#include <string>

namespace velmora::pipewire {

/// A tap says whom to hear; a device of a tap is where callbacks are installed; a started callback
/// is a part of the mix.
///
/// Threads: main. Errors: as `AudioHardware`; what was made under a connection that was lost since
/// cannot be started any more, but stopped and destroyed.
class TapDevices {
public:
    explicit TapDevices(Session& session) : session_(session) {}

    StatusOr<AudioObjectID> createTap(const TapDescription& description);
    Status destroyTap(AudioObjectID tap);

    StatusOr<AudioObjectID> createDevice(const std::string& tapUUID);
    [[nodiscard]] bool contains(AudioObjectID device) const { return devices_.contains(device); }
    Status destroyDevice(AudioObjectID device);

    StatusOr<IOProcID> createProc(AudioObjectID device, IOCallback callback);
    Status destroyProc(AudioObjectID device, IOProcID proc);
    Status start(AudioObjectID device, IOProcID proc);
    Status stop(AudioObjectID device, IOProcID proc);

private:
    struct Tap {
        AudioObjectID process{};
        std::string uuid;
        float scale{1.0F};
        std::uint32_t epoch{};
    };
    struct Proc {
        IOCallback callback;
        std::unique_ptr<TapPart> part; // both present while started
        std::unique_ptr<RouteHold> route;
    };
    struct Device {
        AudioObjectID tap{};
        std::map<IOProcID, Proc> procs;
    };
    [[nodiscard]] Proc* find(AudioObjectID device, IOProcID proc);
    [[nodiscard]] bool isAlive(const Tap& tap);
    Status open(Proc& proc, const Tap& tap);
    static void close(Proc& proc);

    Session& session_;
    std::map<AudioObjectID, Tap> taps_;
    std::map<AudioObjectID, Device> devices_;
    IOProcID lastProc_ = 0;
};

} // namespace velmora::pipewire
