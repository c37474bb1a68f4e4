// Platform.h: everything that the mixer needs of the machine, as one value to hand around.
#pragma once

namespace velmora {

class Appearance;
class Applications;
class ApplicationTaps;
class AudioDevices;
class AudioUnits;
class DefaultsStore;
class GlobalShortcuts;
class LoginItem;
class MainQueue;
class Notices;
class PublicSinks;

/// References to one implementation of each interface. The implementations outlive every object
/// that was given this value.
struct Platform {
    AudioDevices& devices;
    ApplicationTaps& taps;
    PublicSinks& sinks;
    AudioUnits& units;
    Applications& applications;
    DefaultsStore& defaults;
    MainQueue& mainQueue;
    Appearance& appearance;
    LoginItem& loginItem;
    GlobalShortcuts& shortcuts;
    Notices& notices;
};

} // namespace velmora
