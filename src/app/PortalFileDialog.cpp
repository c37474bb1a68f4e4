#include "app/PortalFileDialog.h"

#include "platform/desktop/PortalRequest.h"

#include <QStringList>
#include <QUrl>
#include <QVariantMap>

namespace velmora {

void showPortalFileDialog(const QDBusConnection& bus,
                          const PortalFileQuestion& question,
                          const PortalFileAnswers& answers,
                          QObject* parent) {
    QVariantMap options{{"modal", true}};
    if (question.isForSaving) {
        options.insert("current_name", question.suggestedName);
    }
    const auto answered = [answers](uint response, const QVariantMap& results) {
        if (response == PortalRequest::done) {
            const QString file = QUrl(results.value("uris").toStringList().value(0)).toLocalFile();
            if (!file.isEmpty()) {
                answers.chosen(file);
            }
        } else if (response != PortalRequest::cancelled) {
            answers.unavailable(); // what ended in another way has perhaps never been shown
        }
    };
    new PortalRequest(bus,
                      {.interface = "org.freedesktop.portal.FileChooser",
                       .method = question.isForSaving ? "SaveFile" : "OpenFile",
                       .arguments = {question.parentWindow, question.title},
                       .options = options},
                      answered,
                      parent);
}

} // namespace velmora
