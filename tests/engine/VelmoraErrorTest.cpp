#include "engine/VelmoraError.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(VelmoraError, DescribesItselfByItsMessage) {
    const VelmoraError tap = VelmoraError::tap("IOProc refusé (err -1)");
    const VelmoraError engine = VelmoraError::engine("Unité audio indisponible");

    EXPECT_EQ(tap.which(), VelmoraError::Case::tap);
    EXPECT_EQ(tap.errorDescription(), "IOProc refusé (err -1)");
    EXPECT_EQ(engine.which(), VelmoraError::Case::engine);
    EXPECT_STREQ(engine.what(), "Unité audio indisponible");
}

TEST(VelmoraError, DescribesAMissingVirtualMicrophone) {
    EXPECT_EQ(
        VelmoraError::noVirtualMic().errorDescription(),
        "Micro virtuel introuvable — réinstalle Velmora (le driver a peut-être été supprimé).");
}

TEST(VelmoraError, TellsCasesOfOneMessageApart) {
    EXPECT_NE(VelmoraError::tap("same"), VelmoraError::engine("same"));
    EXPECT_EQ(VelmoraError::tap("same"), VelmoraError::tap("same"));
}

TEST(VelmoraError, WritesAStatusAsASignedNumber) {
    const auto description = [](Status status) {
        return VelmoraError({.kind = Problem::Kind::tapCallbackRefused, .status = status})
            .errorDescription();
    };
    EXPECT_EQ(description(-10851), "IOProc refusé (err -10851)");
    EXPECT_EQ(description(2003329396), "IOProc refusé (err 2003329396)");
}

} // namespace
} // namespace velmora
