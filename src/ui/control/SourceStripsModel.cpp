#include "ui/control/SourceStripsModel.h"

#include "engine/AudioEngine.h"
#include "ui/control/SourceStripModel.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace velmora {

SourceStripsModel::SourceStripsModel(const Platform& platform, AudioEngine& engine, QObject* parent)
    : QAbstractListModel(parent), platform_(platform), engine_(engine),
      connection_(engine.changed().connect([this] { follow(); })) {
    follow();
}

SourceStripModel* SourceStripsModel::strip(int row) const {
    return row >= 0 && row < count() ? strips_[static_cast<std::size_t>(row)] : nullptr;
}

int SourceStripsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant SourceStripsModel::data(const QModelIndex& index, int role) const {
    return role == StripRole ? QVariant::fromValue(strip(index.row())) : QVariant();
}

QHash<int, QByteArray> SourceStripsModel::roleNames() const {
    return {{StripRole, "strip"}};
}

void SourceStripsModel::setFollowsLevels(bool follows) {
    followsLevels_ = follows;
    for (auto* const strip : strips_) {
        strip->setFollowsLevel(follows);
    }
}

void SourceStripsModel::setOpening(const AudioSource& source, bool opening) {
    for (auto* const strip : strips_) {
        if (strip->source() == source) {
            strip->setOpening(opening);
        }
    }
}

void SourceStripsModel::follow() {
    const auto& wanted = engine_.sources();
    const auto same = [](const SourceStripModel* strip, const AudioSource& source) {
        return strip->source() == source;
    };
    const auto start = std::ranges::mismatch(strips_, wanted, same);
    if (start.in1 == strips_.end() && start.in2 == wanted.end()) {
        return;
    }
    // What follows the edited part stays as it is as well: of equal sources the right one goes.
    const auto end = std::mismatch(std::make_reverse_iterator(strips_.end()),
                                   std::make_reverse_iterator(start.in1),
                                   std::make_reverse_iterator(wanted.end()),
                                   std::make_reverse_iterator(start.in2),
                                   same);
    const std::vector<AudioSource> edited(start.in2, end.second.base());
    const auto first = static_cast<std::size_t>(start.in1 - strips_.begin());
    const auto last = static_cast<std::size_t>(end.first.base() - strips_.begin());
    const auto kept = strips_.size() - last;
    const auto before = count();
    removeLeavers(first, last, edited);
    for (std::size_t index = 0; index < edited.size(); ++index) {
        place(first + index, strips_.size() - kept, edited[index]);
    }
    countTwins();
    if (count() != before) {
        Q_EMIT countChanged();
    }
}

void SourceStripsModel::removeLeavers(std::size_t first,
                                      std::size_t last,
                                      const std::vector<AudioSource>& wanted) {
    for (std::size_t row = last; row-- > first;) {
        const AudioSource& source = strips_[row]->source();
        const auto upToHere =
            std::count_if(strips_.begin() + static_cast<std::ptrdiff_t>(first),
                          strips_.begin() + static_cast<std::ptrdiff_t>(row + 1),
                          [&](const auto* strip) { return strip->source() == source; });
        if (upToHere > std::ranges::count(wanted, source)) {
            remove(row);
        }
    }
}

void SourceStripsModel::place(std::size_t row, std::size_t last, const AudioSource& source) {
    for (std::size_t candidate = row; candidate < last; ++candidate) {
        if (strips_[candidate]->source() == source) {
            return move(candidate, row);
        }
    }
    insert(row, source);
}

void SourceStripsModel::insert(std::size_t row, const AudioSource& source) {
    auto* const strip = new SourceStripModel(platform_, engine_, source, this);
    strip->setFollowsLevel(followsLevels_);
    connect(strip, &SourceStripModel::removed, this, &SourceStripsModel::sourceRemoved);
    connect(strip, &SourceStripModel::wantedBack, this, &SourceStripsModel::sourceWantedBack);
    const auto index = static_cast<int>(row);
    beginInsertRows({}, index, index);
    strips_.insert(strips_.begin() + index, strip);
    endInsertRows();
}

void SourceStripsModel::remove(std::size_t row) {
    const auto index = static_cast<int>(row);
    beginRemoveRows({}, index, index);
    auto* const strip = strips_[row];
    strips_.erase(strips_.begin() + index);
    endRemoveRows();
    // A view may still show the strip for the rest of this turn of the event loop.
    strip->deleteLater();
}

void SourceStripsModel::countTwins() {
    std::map<QString, int> seen;
    for (auto* const strip : strips_) {
        strip->setTwin(++seen[strip->name()]);
    }
}

void SourceStripsModel::move(std::size_t from, std::size_t to) {
    if (from == to) {
        return;
    }
    const auto source = static_cast<int>(from);
    const auto target = static_cast<int>(to);
    beginMoveRows({}, source, source, {}, target);
    std::rotate(strips_.begin() + target, strips_.begin() + source, strips_.begin() + source + 1);
    endMoveRows();
}

} // namespace velmora
