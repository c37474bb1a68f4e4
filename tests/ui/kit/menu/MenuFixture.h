// MenuFixture.h: a menu of sources whose entries note what happens to them.
#pragma once

#include "ui/kit/menu/GumMenuModel.h"
#include "ui/support/QmlTest.h"

#include <QStringList>
#include <vector>

namespace velmora {

class MenuFixture : public QmlTest {
protected:
    GumMenuItem entry(const QString& title) {
        return {.title = title, .action = [this, title] { happened.append(title); }};
    }
    std::vector<GumMenuItem> entries(int count) {
        std::vector<GumMenuItem> many;
        for (int number = 0; number < count; ++number) {
            many.push_back(entry(QString("Entry %1").arg(number)));
        }
        return many;
    }
    /// A caption, "Firefox" (chosen, playing), a rule, "Interface" with two children, "Gone"
    /// (disabled), "Podcast" (can be deleted).
    std::vector<GumMenuItem> sources() {
        GumMenuItem firefox = entry("Firefox");
        firefox.checked = true;
        firefox.playing = true;
        GumMenuItem interface = entry("Interface");
        interface.symbol = "mic";
        interface.children = {entry("Inputs 1-2"), entry("Inputs 3-4")};
        GumMenuItem gone = entry("Gone");
        gone.enabled = false;
        GumMenuItem podcast = entry("Podcast");
        podcast.onDelete = [this] { happened.append("delete Podcast"); };
        return {{.kind = GumMenuItem::Kind::header, .title = "Applications"},
                firefox,
                {.kind = GumMenuItem::Kind::separator},
                interface,
                gone,
                podcast};
    }

    QStringList happened;
    GumMenuModel menu;
};

} // namespace velmora
