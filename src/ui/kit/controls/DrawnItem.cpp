#include "ui/kit/controls/DrawnItem.h"

#include <QImage>
#include <QPaintDevice>
#include <QPainter>
#include <QQuickWindow>
#include <QRegion>
#include <QSGImageNode>
#include <QSGRenderNode>
#include <QSGRendererInterface>
#include <QSGTexture>
#include <cmath>

namespace velmora {

namespace {

/// Its edges on the nearest pixels. What is as wide as high stays so wherever it is.
QRectF onPixels(const QRectF& place) {
    const double left = std::round(place.left());
    const double top = std::round(place.top());
    constexpr double noDifference = 1e-3; // pixels
    if (std::abs(place.width() - place.height()) < noDifference) {
        const double side = std::round(place.width());
        return {left, top, side, side};
    }
    return {left, top, std::round(place.right()) - left, std::round(place.bottom()) - top};
}

/// What is drawn anew, in points. Qt leaves out the last pixels of a window that is no whole number
/// of points high or wide.
QRegion toTheLastPixel(QRegion clip, const QPaintDevice& device, double pixelsPerPoint) {
    const int right = int(device.width() / pixelsPerPoint) - 1;
    const int bottom = int(device.height() / pixelsPerPoint) - 1;
    clip += (clip & QRect(0, bottom, right + 1, 1)).translated(0, 1);
    clip += (clip & QRect(right, 0, 1, bottom + 2)).translated(1, 0);
    return clip;
}

/// Qt gives an item no region to draw in both where nothing cuts it and where nothing is left of
/// it.
bool isCut(const QQuickItem& item) {
    for (const QQuickItem* list = item.parentItem(); list != nullptr; list = list->parentItem()) {
        if (list->clip()) {
            return true;
        }
    }
    return false;
}

} // namespace

/// Draws an item while the processor draws its window.
class WindowDrawing : public QSGRenderNode {
public:
    explicit WindowDrawing(DrawnItem& item) : item_(item) {}

    void setSize(const QSizeF& size) { size_ = size; }

    RenderingFlags flags() const override { return BoundedRectRendering; }
    /// Rounding may take an edge half a pixel out of its bounds.
    QRectF rect() const override { return QRectF({}, size_).adjusted(-1, -1, 1, 1); }

    void render(const RenderState* state) override {
        const QRegion* const clip = state->clipRegion();
        const bool hasClip = clip != nullptr && !clip->isEmpty();
        if (!hasClip && isCut(item_)) {
            return;
        }
        QQuickWindow& window = *item_.window();
        auto& painter = *static_cast<QPainter*>(window.rendererInterface()->getResource(
            &window, QSGRendererInterface::PainterResource));
        const double pixelsPerUnit = painter.device()->devicePixelRatio();
        painter.save();
        if (hasClip) {
            painter.setClipRegion(toTheLastPixel(*clip, *painter.device(), pixelsPerUnit),
                                  Qt::ReplaceClip);
        }
        painter.setTransform(matrix()->toTransform());
        const QTransform toPixels = painter.deviceTransform();
        painter.setTransform(QTransform::fromScale(1 / pixelsPerUnit, 1 / pixelsPerUnit));
        painter.setOpacity(inheritedOpacity());
        painter.setRenderHint(QPainter::Antialiasing);
        item_.draw(painter, onPixels(toPixels.mapRect(QRectF({}, size_))), toPixels.m11());
        painter.restore();
    }

private:
    DrawnItem& item_; // this node goes with it
    QSizeF size_;     // points
};

DrawnItem::DrawnItem(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

QSGNode* DrawnItem::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    if (width() <= 0 || height() <= 0) {
        delete old;
        return nullptr;
    }
    if (window()->rendererInterface()->graphicsApi() != QSGRendererInterface::Software) {
        return texture(old);
    }
    auto* const node = old != nullptr ? static_cast<WindowDrawing*>(old) : new WindowDrawing(*this);
    node->setSize(size());
    node->markDirty(QSGNode::DirtyGeometry | QSGNode::DirtyMaterial);
    return node;
}

QSGNode* DrawnItem::texture(QSGNode* old) {
    const double scale =
        mapRectToScene({0, 0, 1, 1}).width() * window()->effectiveDevicePixelRatio();
    const QRectF place = onPixels({0, 0, width() * scale, height() * scale});
    QImage picture(place.size().toSize().expandedTo({1, 1}), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter, place, scale);
    painter.end();
    auto* const node =
        old != nullptr ? static_cast<QSGImageNode*>(old) : window()->createImageNode();
    node->setOwnsTexture(true);
    node->setTexture(window()->createTextureFromImage(picture));
    node->setFiltering(QSGTexture::Linear);
    node->setRect(QRectF({}, QSizeF(picture.size()) / scale));
    return node;
}

void DrawnItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange) {
        disconnect(resizes_);
        if (data.window != nullptr) {
            // A point of another size gives a window another width, and tells the items nothing.
            resizes_ = connect(data.window, &QWindow::widthChanged, this, &QQuickItem::update);
        }
    }
    if (change == ItemDevicePixelRatioHasChanged) {
        update();
    }
}

void DrawnItem::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size()) {
        update();
    }
}

} // namespace velmora
