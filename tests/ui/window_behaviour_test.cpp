// The windows on a real X server with a window manager (Xvfb and openbox):
// the companion's windows stand above the game's window, and another
// program that holds the keyboard focus keeps it while companion windows
// are shown, updated and clicked. Skipped, with a message, where Xvfb or
// openbox is not installed.
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace {

QString Tool(const char* name) { return QStandardPaths::findExecutable(QString::fromLatin1(name)); }

class XSession {
public:
    // An X server on a display number it chooses itself (others may be in
    // use on a shared machine); false when it did not come up.
    bool StartServer() {
        auto* p = new QProcess;
        procs_.push_back(p);
        p->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        p->start(Tool("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                                QStringLiteral("0"), QStringLiteral("1600x1200x24"), QStringLiteral("-nolisten"),
                                QStringLiteral("tcp")});
        if (!p->waitForStarted(5000)) return false;
        QByteArray out;
        QElapsedTimer t;
        t.start();
        while (!out.contains('\n') && t.elapsed() < 10000) {
            p->waitForReadyRead(200);
            out += p->readAllStandardOutput();
        }
        bool ok = false;
        const int n = out.trimmed().toInt(&ok);
        if (!ok) return false;
        display_ = QStringLiteral(":%1").arg(n);
        return true;
    }
    ~XSession() {
        for (auto it = procs_.rbegin(); it != procs_.rend(); ++it) {
            (*it)->terminate();
            if (!(*it)->waitForFinished(2000)) (*it)->kill();
            (*it)->waitForFinished(1000);
            delete *it;
        }
    }
    QProcessEnvironment Env() const {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("DISPLAY"), display_);
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        env.remove(QStringLiteral("WAYLAND_DISPLAY"));
        return env;
    }
    QProcess* Start(const QString& program, const QStringList& args) {
        auto* p = new QProcess;
        p->setProcessEnvironment(Env());
        p->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        p->setStandardOutputFile(QProcess::nullDevice());
        p->start(program, args);
        procs_.push_back(p);
        return p;
    }
    // Runs a tool on the display; its output, trimmed. (A search may end
    // with an error when a window closes while it looks; what it found
    // still counts.)
    QString Run(const QString& tool, const QStringList& args) const {
        QProcess p;
        p.setProcessEnvironment(Env());
        p.start(tool, args);
        if (!p.waitForFinished(5000)) return {};
        return QString::fromUtf8(p.readAllStandardOutput()).trimmed();
    }
    template <class F>
    bool WaitFor(F ready, int ms) const {
        QElapsedTimer t;
        t.start();
        while (t.elapsed() < ms) {
            if (ready()) return true;
            QThread::msleep(100);
        }
        return false;
    }
    const QString& Display() const { return display_; }

private:
    QString display_;
    std::vector<QProcess*> procs_;
};

// Window ids (decimal) whose title matches a pattern exactly.
QStringList Windows(const XSession& x, const QString& title) {
    const QString out = x.Run(Tool("xdotool"), {QStringLiteral("search"), QStringLiteral("--name"), "^" + title + "$"});
    return out.isEmpty() ? QStringList{} : out.split('\n');
}

QString ActiveTitle(const XSession& x) {
    return x.Run(Tool("xdotool"), {QStringLiteral("getactivewindow"), QStringLiteral("getwindowname")});
}

// Top-level windows bottom to top, as the window manager stacks them.
QList<qulonglong> Stacking(const XSession& x) {
    const QString out = x.Run(Tool("xprop"), {QStringLiteral("-root"), QStringLiteral("_NET_CLIENT_LIST_STACKING")});
    QList<qulonglong> ids;
    const int hash = out.indexOf('#');
    if (hash < 0) return ids;
    for (const QString& part : out.mid(hash + 1).split(',')) ids << part.trimmed().toULongLong(nullptr, 16);
    return ids;
}

// The client window the manager lists for a window found by title.
int StackIndex(const QList<qulonglong>& stack, const QString& id) { return static_cast<int>(stack.indexOf(id.toULongLong())); }

TEST(WindowBehaviour, CompanionWindowsStayAboveTheGameAndNeverTakeTheFocus) {
    for (const char* tool : {"Xvfb", "openbox", "xdotool", "xprop"})
        if (Tool(tool).isEmpty()) GTEST_SKIP() << tool << " is not installed (scripts/install-deps installs it)";
    XSession x;
    ASSERT_TRUE(x.StartServer()) << "Xvfb did not start";
    x.Start(Tool("openbox"), {});
    ASSERT_TRUE(x.WaitFor([&] { return x.Run(Tool("xprop"), {QStringLiteral("-root"), QStringLiteral("_NET_SUPPORTING_WM_CHECK")}).contains('#'); }, 10000));

    const QString home = QStringLiteral(TARVELLOS_BINARY_DIR "/window-behaviour-home");
    QProcess::execute(QStringLiteral("rm"), {QStringLiteral("-rf"), home});
    x.Start(QStringLiteral(TARVELLOS_GUI),
            {QStringLiteral("--demo"), QStringLiteral("--speed"), QStringLiteral("25"), QStringLiteral("--deals"),
             QStringLiteral("12"), QStringLiteral("--home"), home});
    // The card play window appears with the first trick read.
    ASSERT_TRUE(x.WaitFor([&] { return !Windows(x, QStringLiteral("CardPlay")).isEmpty(); }, 40000));
    const QStringList game = Windows(x, QStringLiteral("Yahoo! Spades \\(simulated\\)"));
    ASSERT_EQ(game.size(), 1);

    x.Start(QStringLiteral(TARVELLOS_FOCUS_HOLDER), {});
    ASSERT_TRUE(x.WaitFor([&] { return ActiveTitle(x) == QLatin1String("Focus Holder"); }, 10000))
        << "the focus holder did not get the focus: " << ActiveTitle(x).toStdString();

    // Deals go on: counters come and go, the card play window and the
    // score sheet are redrawn. The focus stays where it is.
    QElapsedTimer t;
    t.start();
    QStringList seen;
    while (t.elapsed() < 8000) {
        const QString active = ActiveTitle(x);
        if (active != QLatin1String("Focus Holder") && !seen.contains(active)) seen << active;
        QThread::msleep(150);
    }
    EXPECT_TRUE(seen.isEmpty()) << "the focus went to: " << seen.join(", ").toStdString();

    // A click on a companion window leaves the focus where it was.
    QStringList cardPlay;
    ASSERT_TRUE(x.WaitFor([&] { return !(cardPlay = Windows(x, QStringLiteral("CardPlay"))).isEmpty(); }, 5000));
    x.Run(Tool("xdotool"), {QStringLiteral("mousemove"), QStringLiteral("--window"), cardPlay.first(), QStringLiteral("60"),
                            QStringLiteral("40"), QStringLiteral("click"), QStringLiteral("1")});
    QThread::msleep(500);
    EXPECT_EQ(ActiveTitle(x).toStdString(), "Focus Holder");

    // Every companion window shown stands above the game's window.
    const QList<qulonglong> stack = Stacking(x);
    const int gameAt = StackIndex(stack, game.first());
    ASSERT_GE(gameAt, 0);
    int above = 0;
    for (const QString& title : {QStringLiteral("CardPlay"), QStringLiteral("Hands"), QStringLiteral("Score")}) {
        for (const QString& id : Windows(x, title)) {
            const int at = StackIndex(stack, id);
            if (at < 0) continue;  // not mapped now
            EXPECT_GT(at, gameAt) << title.toStdString() << " is below the game window";
            ++above;
        }
    }
    EXPECT_GE(above, 1);
}

}  // namespace
