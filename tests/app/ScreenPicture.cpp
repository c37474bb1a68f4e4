#include "app/ScreenPicture.h"

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace velmora {
namespace {

const QRgb* row(const QImage& picture, int y) {
    return reinterpret_cast<const QRgb*>(picture.constScanLine(y));
}

/// The smallest area with every pixel for which `isMeant(x, y)`.
template <std::predicate<int, int> Predicate>
QRect areaWhere(const QSize& size, Predicate isMeant) {
    QRect area;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            if (isMeant(x, y)) {
                area |= QRect(x, y, 1, 1);
            }
        }
    }
    return area;
}

} // namespace

QImage screenPicture(const std::string& display) {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(display.c_str(), nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0) {
        return {};
    }
    const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data;
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
        xcb_get_image_reply(connection.get(),
                            xcb_get_image(connection.get(),
                                          XCB_IMAGE_FORMAT_Z_PIXMAP,
                                          screen.root,
                                          0,
                                          0,
                                          screen.width_in_pixels,
                                          screen.height_in_pixels,
                                          ~std::uint32_t{0}),
                            nullptr),
        &std::free);
    if (!reply) {
        return {};
    }
    // A display 24 bits deep has 32 for each pixel, in the order of this machine.
    return QImage(xcb_get_image_data(reply.get()),
                  screen.width_in_pixels,
                  screen.height_in_pixels,
                  QImage::Format_RGB32)
        .copy();
}

QRect areaOf(const QImage& picture, const QColor& color) {
    return areaWhere(picture.size(), [&, wanted = color.rgb()](int x, int y) {
        return (row(picture, y)[x] | ~RGB_MASK) == wanted;
    });
}

QRect difference(const QImage& one, const QImage& other) {
    return areaWhere(one.size(), [&](int x, int y) { return row(one, y)[x] != row(other, y)[x]; });
}

} // namespace velmora
