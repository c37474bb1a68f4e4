// FakeFileChooser.h: a user who names files as a test wants.
#pragma once

#include "ui/control/FileChooser.h"

#include <QStringList>
#include <utility>

namespace velmora {

class FakeFileChooser : public FileChooser {
public:
    void askToOpen(const FileQuestion& question, Chosen chosen) override {
        asked << "open: " + question.title;
        chosen_ = std::move(chosen);
    }
    void askToSave(const FileQuestion& question, Chosen chosen) override {
        asked << "save: " + question.title + ": " + question.suggestedName;
        chosen_ = std::move(chosen);
    }
    /// Answers the last question.
    void choose(const QString& path) { std::exchange(chosen_, {})(path); }

    QStringList asked;

private:
    Chosen chosen_;
};

} // namespace velmora
