// FileChooser.h: lets the user name a file.
#pragma once

#include <QString>
#include <functional>

namespace velmora {

struct FileQuestion {
    QString title{};         ///< in the user's language
    QString suggestedName{}; ///< of a file to be written, without a folder
};

/// Threads: main. Each question is answered on its own, later, and at most once: not when the user
/// cancels, and never after this object has gone.
class FileChooser {
public:
    using Chosen = std::function<void(const QString& path)>;

    virtual ~FileChooser() = default;

    /// A file that exists.
    virtual void askToOpen(const FileQuestion& question, Chosen chosen) = 0;
    /// A file to be written. Of one that exists, the user has agreed that it goes.
    virtual void askToSave(const FileQuestion& question, Chosen chosen) = 0;
};

} // namespace velmora
