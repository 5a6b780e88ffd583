// tarvellos --demo: the simulated game in a window of its own and the
// companion's real windows beside it, reading the game through the
// simulated desktop. Without a display every companion window is written
// as a picture after every deal.
#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

namespace platform {
class SimDesktop;
}

namespace app {

struct GuiDemoOptions {
    double Speed = 1;        // times faster than the game's own pace
    int Deals = 12;
    QString Home;            // program folder; a fresh one when empty
    QString Snapshots;       // pictures folder; named by the demo when empty
    bool Headless = false;   // no screen: pictures instead, as fast as it goes
};

int RunGuiDemo(const GuiDemoOptions& options);

// The game's windows of a simulated desktop, painted at their screen places.
// A click on it is a click on the simulated screen at the same place.
class GameView : public QWidget {
    Q_OBJECT
public:
    explicit GameView(platform::SimDesktop& desktop, QWidget* parent = nullptr);
    // The desktop's picture changed.
    void refresh();
    QImage picture() const { return picture_; }

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* e) override;

private:
    platform::SimDesktop& desktop_;
    QImage picture_;
};

}  // namespace app
