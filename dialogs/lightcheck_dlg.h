// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/struct.h"
#include "lights/findings.h"
#include "lights/history.h"
#include "lights/measuring.h"
#include "showing.h"

#include <QDialog>
#include <QSortFilterProxyModel>

#include <memory>
#include <optional>

namespace Ui {
class LightCheck_dlg;
}
class Curves;
class LightModel;
class QMenu;

// Measures all lights of the frame and shows what is wrong with which, as the frame stands on the
// wall, in curves, in a table and in words; compares with what was remembered of the unit, and
// writes reports.
//
// While it measures it has the frame for itself: the signal test and the light screen beside it
// stand aside.
class LightCheck_dlg : public QDialog
{
    Q_OBJECT
public:
    explicit LightCheck_dlg(QWidget *parent = nullptr);
    ~LightCheck_dlg() override;

    void linkBegan(lights::Measuring::Source source);

    // What is shown; without lights before the first measurement.
    const lights::Report &shown() const { return report; }
    // The file says by its name what it is to be: .html, .pdf, .json or .csv.
    void saveReport(const QString &path);
    void compareWithFile(const QString &path);

signals:
    void Write03(UCHAR *WriteBuf);

public slots:
    void on_measureButton_clicked();
    void on_rememberButton_clicked();
    void on_reportButton_clicked();
    void on_nameEdit_editingFinished();
    void on_findingsList_itemSelectionChanged();
    void on_table_activated(const QModelIndex &index);
    void DoRecv03(UCHAR *RecvBuf);
    // What is shown stays: it says which unit it is of.
    void OnLinkEnded();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    // What a measurement is compared with.
    enum class Baseline { Newest, None, Chosen };

    void addCurves();
    void addTable();

    void onMeasuringChanged();
    void onProgress(int pages, int all);
    void onScanned();
    void onFinished();
    void take(lights::Measurement measurement, bool isLast);

    void recall();
    void compare(bool withTrend);
    void fillMenu();
    void chooseBaseline(Baseline which, const std::optional<lights::Measurement> &measurement);

    bool hasLights() const;
    void showReport();
    void showUnit();
    void showFindings();
    int rowLike(const lights::Finding &before) const;
    void showCurves();
    void showComparison();
    void tell(const QString &words);
    void chooseLight(const lights::LightPlace &place, const QObject *by = nullptr);
    void openLight(const lights::LightPlace &place);
    template <typename Window>
    Window *sibling() const
    {
        return parentWidget() ? parentWidget()->findChild<Window *>() : nullptr;
    }

    std::unique_ptr<Ui::LightCheck_dlg> ui;
    Showing showing{this};
    lights::Measuring measuring;
    lights::History history;
    lights::Report report;
    std::vector<lights::Finding> findings; // and where touches go wrong, as the list shows them
    QStringList findingWords;

    std::vector<lights::Measurement> kept; // of this unit, oldest first
    std::optional<lights::Unit> keptOf;
    QStringList unread; // what else was kept, each with its reason
    Baseline baseline = Baseline::Newest;
    std::optional<lights::Measurement> chosenBaseline;
    std::optional<lights::Verdicts> baselineVerdicts; // of report.baseline

    LightModel *model;            // child
    QSortFilterProxyModel *order; // child
    Curves *curves = nullptr;     // its widget is a child; none when its part is missing
    QMenu *menu;                  // child
};
