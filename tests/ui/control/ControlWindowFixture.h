// ControlWindowFixture.h: the control window's model over the core.
#pragma once

#include "ui/control/ControlWindowModel.h"
#include "ui/support/ModelFixture.h"

#include <vector>

namespace velmora {

class ControlWindowFixture : public ModelFixture {
protected:
    /// The row that shows this title; −1 when there is none.
    static int rowOf(const GumMenuModel& menu, const QString& title) {
        for (int row = 0; row < menu.rowCount(); ++row) {
            if (menu.data(menu.index(row), GumMenuModel::TitleRole).toString() == title) {
                return row;
            }
        }
        return -1;
    }
    static std::vector<QString> titles(const GumMenuModel& menu) {
        std::vector<QString> result;
        for (int row = 0; row < menu.rowCount(); ++row) {
            result.push_back(menu.data(menu.index(row), GumMenuModel::TitleRole).toString());
        }
        return result;
    }
    static void choose(GumMenuModel& menu, const QString& title) {
        const int row = rowOf(menu, title);
        ASSERT_GE(row, 0) << title.toStdString();
        menu.activate(row);
    }

    ControlWindowModel model{
        {machine.platform(), engine, sources, presets, recall, settings, talk}};
};

} // namespace velmora
