// Platform.h: everything that the mixer needs of the machine, as one value to hand around.
#pragma once

namespace velmora {

class Appearance;
class Applications;
class AudioHardware;
class AudioUnits;
class DefaultsStore;
class LoginItem;
class MainQueue;

/// References to one implementation of each interface. The implementations outlive every object
/// that was given this value.
struct Platform {
    AudioHardware& hardware;
    AudioUnits& units;
    Applications& applications;
    DefaultsStore& defaults;
    MainQueue& mainQueue;
    Appearance& appearance;
    LoginItem& loginItem;
};

} // namespace velmora
