#include "MixWindow.h"

#include "engine/AudioEngine.h"
#include "ui/Renderer.h"
#include "ui/Ui.h"
#include "ui/WindowPicture.h"
#include "ui/control/SourceStripModel.h"
#include "ui/kit/Kit.h"

#include <QUrl>
#include <stdexcept>

namespace velmora::demo {

MixWindow::MixWindow(const Platform& platform, AudioEngine& engine)
    : platform_(platform), recall_(platform_, engine), talk_(engine),
      model_({platform_, engine, sources_, presets_, recall_, settings_, talk_}) {
    installKit(qml_, settings_);
    installUi(qml_);
    drawWindowsBy(Renderer::processor);
    auto made = makeWindow(qml_, QUrl("qrc:/qt/qml/Velmora/ControlWindow.qml"), model_);
    if (!made) {
        throw std::runtime_error(made.error());
    }
    window_ = std::move(*made);
    window_->show();
}

std::vector<std::string> MixWindow::takePictures(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    const auto take = [&](const std::string& what, const WindowLook& look) {
        const std::string name = "window-" + what + ".png";
        if (!saveWindowPicture(*window_, settings_, look, QString::fromStdString(folder / name))) {
            throw std::runtime_error("could not write " + (folder / name).string());
        }
        names.push_back(name);
    };
    take("light-fr", {"light", "fr"});
    take("dark-en", {"dark", "en"});

    SourceStripModel* const first = model_.strips()->strip(0);
    first->setFxOpen(true);
    first->effects()->toggle("reverb");
    take("effects-light-en", {"light", "en"});
    take("effects-dark-fr", {"dark", "fr"});
    first->setFxOpen(false);
    return names;
}

} // namespace velmora::demo
