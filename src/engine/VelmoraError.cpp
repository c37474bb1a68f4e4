#include "engine/VelmoraError.h"

namespace velmora {

VelmoraError VelmoraError::tap(std::string message) {
    return {Case::tap, std::move(message)};
}

VelmoraError VelmoraError::engine(std::string message) {
    return {Case::engine, std::move(message)};
}

VelmoraError VelmoraError::noVirtualMic() {
    return {Case::noVirtualMic,
            "Micro virtuel introuvable — réinstalle Velmora (le driver a peut-être été supprimé)."};
}

std::string withStatus(std::string_view sentence, Status status) {
    return std::string(sentence) + " (err " + std::to_string(status) + ")";
}

} // namespace velmora
