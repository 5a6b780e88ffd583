// tarvellos: the companion with its windows, beside the game on this
// desktop; or, with --demo, beside a simulated game.

#include <QApplication>
#include <QCommandLineParser>
#include <QGuiApplication>
#include <cstdio>
#include <string>

#include "app/gui_demo.h"
#include "core/folders.h"
#include "platform/factory/open_desktop.h"
#include "platform/system_info.h"
#include "tracking/companion.h"
#include "tracking/pixel_readers.h"
#include "ui/bridge.h"
#include "ui/qt_style.h"

namespace {

// Without a screen Qt tells of every stacking request it cannot carry out;
// for the demo's pictures that is expected, not news.
QtMessageHandler qtHandler = nullptr;
void QuietOffscreen(QtMsgType type, const QMessageLogContext& ctx, const QString& msg) {
    if (msg.startsWith(QLatin1String("This plugin does not support"))) return;
    if (qtHandler) qtHandler(type, ctx, msg);
}

int RunCompanion(const QString& homeArg) {
    platform::OpenedDesktop opened = platform::OpenDesktop(platform::DesktopKind::Native);
    if (!opened.Backend) {
        std::fprintf(stderr, "tarvellos: %s\n", opened.Error.c_str());
        return 1;
    }
    const platform::Desktop desktop = opened.Backend->Roles();
    platform::HostSystemInfo host;
    ui::GuiClock clock;
    tracking::ScreenReading screen(desktop, clock);
    ui::CompanionUi ui;
    tracking::Companion companion(desktop, clock, core::FoldersFor(homeArg.toStdString(), host), screen, ui);
    // The check against a program unpacked into a temporary folder guards
    // the default folder only: a folder given with --home was chosen.
    companion.SetArchiveCheck(homeArg.isEmpty());
    ui.attach(companion);
    ui.OnEnded = [] { QApplication::exit(0); };
    ui.showStartup();
    // A failed check has shown why and waited for "End" already; the
    // console gets the reason too, for a start from a terminal or a script.
    if (!companion.Start()) {
        std::string why = companion.StartupScreen().Text();
        for (char& c : why)
            if (c == '\n' || c == '\r') c = ' ';
        std::fprintf(stderr, "tarvellos: the companion did not start: %s\n", why.c_str());
        return 1;
    }
    ui.start();
    return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    // Without a display the demo writes pictures instead of showing windows.
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tarvellos"));
    QCommandLineParser args;
    args.setApplicationDescription(QStringLiteral("TarvelloS: a companion beside the Spades game."));
    args.addHelpOption();
    const QCommandLineOption demo(QStringLiteral("demo"), QStringLiteral("Follow a simulated game."));
    const QCommandLineOption speed(QStringLiteral("speed"), QStringLiteral("Run the simulated game N times faster."),
                                   QStringLiteral("N"), QStringLiteral("1"));
    const QCommandLineOption deals(QStringLiteral("deals"), QStringLiteral("Deals the simulated game plays."),
                                   QStringLiteral("N"), QStringLiteral("12"));
    const QCommandLineOption home(QStringLiteral("home"), QStringLiteral("Program folder (settings, records)."),
                                  QStringLiteral("DIR"));
    const QCommandLineOption snapshots(QStringLiteral("snapshots"),
                                       QStringLiteral("Folder for a picture of every window after every deal."),
                                       QStringLiteral("DIR"));
    args.addOptions({demo, speed, deals, home, snapshots});
    if (!args.parse(QApplication::arguments())) {
        std::fprintf(stderr, "tarvellos: %s\n", qPrintable(args.errorText()));
        return 2;
    }
    if (args.isSet(QStringLiteral("help"))) {
        std::printf("%s", qPrintable(args.helpText()));
        return 0;
    }
    const QStringList missing = ui::RegisterWindowFonts();
    for (const QString& f : missing) std::fprintf(stderr, "tarvellos: font missing: %s\n", qPrintable(f));
    if (!args.isSet(demo)) {
        if (args.isSet(speed) || args.isSet(deals) || args.isSet(snapshots)) {
            std::fprintf(stderr, "tarvellos: --speed, --deals and --snapshots go with --demo\n");
            return 2;
        }
        return RunCompanion(args.value(home));
    }
    app::GuiDemoOptions o;
    bool ok = false;
    o.Speed = args.value(speed).toDouble(&ok);
    if (!ok || o.Speed <= 0 || o.Speed > 1000) {
        std::fprintf(stderr, "tarvellos: --speed wants a number from 0 to 1000\n");
        return 2;
    }
    o.Deals = args.value(deals).toInt(&ok);
    if (!ok || o.Deals < 1 || o.Deals > 1000) {
        std::fprintf(stderr, "tarvellos: --deals wants a number from 1 to 1000\n");
        return 2;
    }
    o.Home = args.value(home);
    o.Snapshots = args.value(snapshots);
    o.Headless = QGuiApplication::platformName() == QLatin1String("offscreen") ||
                 QGuiApplication::platformName() == QLatin1String("minimal");
    if (o.Headless) qtHandler = qInstallMessageHandler(QuietOffscreen);
    return app::RunGuiDemo(o);
}
