// velmora_port_feeder: plays one tone into each chosen channel of a device until it is ended.
//
// velmora_port_feeder <node.name> <channel>[,<channel>...] <Hz>[,<Hz>...] <dB>

#include "support/clients/Lists.h"
#include "support/clients/PortClient.h"
#include "support/clients/Sine.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    using namespace velmora::support;
    if (argc != 5) {
        std::cerr << "usage: velmora_port_feeder <node.name> <channels> <Hz> <dB>\n";
        return 2;
    }
    try {
        const auto targets = parseTargets(argv[1], argv[2]);
        std::vector<Sine> sines;
        for (const double hz : parseList<double>(argv[3])) {
            sines.emplace_back(hz, std::stod(argv[4]));
        }
        if (sines.size() != targets.size()) {
            throw std::invalid_argument("as many frequencies as channels, please");
        }
        pw_init(nullptr, nullptr);
        PortClient client(PortClient::Direction::play,
                          targets,
                          [&](std::uint32_t frames, std::span<float* const> blocks) {
                              for (std::size_t i = 0; i < blocks.size(); ++i) {
                                  if (blocks[i] != nullptr) {
                                      sines[i].fill(blocks[i], frames);
                                  }
                              }
                          });
        client.run();
    } catch (const std::exception& error) {
        std::cerr << "velmora_port_feeder: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
