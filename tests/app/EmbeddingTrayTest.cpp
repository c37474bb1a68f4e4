#include "app/EmbeddingTray.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

// Qt's platform without a screen knows X11 all the same.
TEST(EmbeddingTray, IsNotThereWithoutADisplay) {
    EXPECT_FALSE(isEmbeddingTrayThere());
}

} // namespace
} // namespace velmora
