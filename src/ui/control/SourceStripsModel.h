// SourceStripsModel.h: the strips of the mix, one for each source, in its order.
#pragma once

#include "platform/Platform.h"
#include "platform/Signal.h"
#include "ui/control/RemovedSource.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <cstddef>
#include <vector>

namespace velmora {

class AudioEngine;
class AudioSource;
class SourceStripModel;

/// A strip lives as long as its source is in the mix; what changes within a source is the strip's
/// own business and moves no row. A source that is in the mix twice has two strips.
///
/// Threads: main.
class SourceStripsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the control window")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { StripRole = Qt::UserRole };

    /// `engine` outlives this object.
    SourceStripsModel(const Platform& platform, AudioEngine& engine, QObject* parent = nullptr);

    [[nodiscard]] int count() const { return static_cast<int>(strips_.size()); }
    [[nodiscard]] SourceStripModel* strip(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// Whether the strips tell their levels.
    void setFollowsLevels(bool follows);
    /// The application of this source is being opened once more.
    void setOpening(const AudioSource& source, bool opening);

Q_SIGNALS:
    void countChanged();
    /// By its strip's own button.
    void sourceRemoved(const velmora::RemovedSource& source);
    void sourceWantedBack(const velmora::AudioSource& source);

private:
    void follow();
    /// Of the rows [first, last), those whose source is not wanted any more.
    void removeLeavers(std::size_t first, std::size_t last, const std::vector<AudioSource>& wanted);
    /// Brings the source's strip to `row`: one of the rows [row, last), or a new one.
    void place(std::size_t row, std::size_t last, const AudioSource& source);
    void insert(std::size_t row, const AudioSource& source);
    void remove(std::size_t row);
    void move(std::size_t from, std::size_t to);
    void countTwins();

    Platform platform_;
    AudioEngine& engine_;
    std::vector<SourceStripModel*> strips_; // children of this object
    bool followsLevels_ = false;
    Signal::Connection connection_;
};

} // namespace velmora
