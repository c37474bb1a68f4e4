#include "ui/control/ApplicationIconProvider.h"

#include "ui/control/SourceIcons.h"

#include <QColor>
#include <QDir>
#include <QImage>
#include <QPixmap>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace velmora {
namespace {

/// What comes after "image://application/" in the URL of this icon.
QString idOf(const QString& icon) {
    return applicationIconUrl(icon.toStdString()).mid(QString("image://application/").size());
}

TEST(ApplicationIconProvider, DrawsTheFileThatAPathNames) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("a picture.png");
    QImage picture(32, 32, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(path));

    ApplicationIconProvider provider;
    QSize size;
    const QImage drawn = provider.requestPixmap(idOf(path), &size, {16, 16}).toImage();

    EXPECT_EQ(size, QSize(16, 16));
    EXPECT_EQ(drawn.pixelColor(8, 8), QColor(Qt::red));
}

TEST(ApplicationIconProvider, DrawsATileForAnUnknownName) {
    ApplicationIconProvider provider;
    QSize size;
    const QImage drawn = provider.requestPixmap(idOf("no such icon"), &size, {48, 48}).toImage();
    EXPECT_EQ(size, QSize(48, 48));
    EXPECT_EQ(drawn.pixelColor(24, 40).alpha(), 255);
    EXPECT_EQ(drawn.pixelColor(0, 0).alpha(), 0);
}

TEST(ApplicationIconProvider, DrawsATileForAFileThatIsNoPicture) {
    ApplicationIconProvider provider;
    QSize size;
    const QImage drawn = provider.requestPixmap(idOf("/dev/null"), &size, {16, 16}).toImage();
    EXPECT_EQ(drawn.pixelColor(8, 12).alpha(), 255);
}

TEST(ApplicationIconProvider, DrawsAtARowsSizeWhenNoneIsAskedFor) {
    ApplicationIconProvider provider;
    EXPECT_EQ(provider.requestPixmap("x", nullptr, {}).size(), QSize(16, 16));
}

} // namespace
} // namespace velmora
