#include "ui/history_window.h"

#include <QDateTime>
#include <QPainter>
#include <QVBoxLayout>

#include "ui/qt_style.h"

#ifdef TARVELLOS_QT_CHARTS
#include <QtCharts/QBarCategoryAxis>
#include <QtCharts/QBarSeries>
#include <QtCharts/QBarSet>
#include <QtCharts/QChart>
#include <QtCharts/QChartView>
#include <QtCharts/QDateTimeAxis>
#include <QtCharts/QLineSeries>
#include <QtCharts/QScatterSeries>
#include <QtCharts/QValueAxis>
#endif

namespace ui {

namespace {

QDateTime When(const RatingPoint& p) {
    return QDateTime(QDate(p.Year, p.Month, p.Day), QTime(p.Hour, p.Minute, p.Second), Qt::UTC);
}

QString RatingTitle(bool japanese) { return japanese ? QStringLiteral("レーティングの推移") : QStringLiteral("Rating"); }
QString NilTitle(bool japanese) { return japanese ? QStringLiteral("ニルの成功率 (%)") : QStringLiteral("NIL Success Rates (%)"); }

}  // namespace

HistoryWindow::HistoryWindow(QWidget* parent) : QWidget(parent) {
    setWindowTitle(QStringLiteral("History"));
    setFixedSize(kWidth, kHeight);
    setAutoFillBackground(true);
    QPalette pal = palette();
    pal.setColor(QPalette::Window, Qt::white);
    setPalette(pal);
    setFont(ToQFont("Arial", 9, false));
    auto* lay = new QVBoxLayout(this);
    lay->setContentsMargins(0, 0, 0, 0);
    lay->setSpacing(0);
    rebuild();
}

void HistoryWindow::loadFiles(const std::string& historyPath, const std::string& nilReportPath, int codePage,
                              bool japanese) {
    const auto ratings = ParseRatingHistory(ReadPlayerFile(historyPath, codePage));
    const auto counts = scoring::ReadNilCounts(ReadPlayerFile(nilReportPath, codePage));
    setData(ratings, NilRates(counts, japanese), japanese);
}

void HistoryWindow::setData(const std::vector<RatingPoint>& ratings, const std::vector<NilRate>& rates,
                            bool japanese) {
    ratings_ = ratings;
    rates_ = rates;
    japanese_ = japanese;
    rebuild();
}

#ifdef TARVELLOS_QT_CHARTS

void HistoryWindow::rebuild() {
    delete ratingView_;
    delete nilView_;
    const QFont font = ToQFont("Arial", 9, false);
    const QFont titleFont = ToQFont("Arial", 10, true);

    auto* rc = new QChart();
    rc->setTitle(RatingTitle(japanese_));
    rc->setTitleFont(titleFont);
    rc->legend()->hide();
    rc->setAnimationOptions(QChart::NoAnimation);
    auto* line = new QLineSeries();
    line->setPen(QPen(QColor(0, 0, 200), 2));
    auto* wins = new QScatterSeries();
    wins->setMarkerSize(7);
    wins->setColor(QColor(0, 160, 0));
    wins->setBorderColor(QColor(0, 160, 0));
    auto* losses = new QScatterSeries();
    losses->setMarkerSize(7);
    losses->setColor(QColor(220, 0, 0));
    losses->setBorderColor(QColor(220, 0, 0));
    int lo = 1500, hi = 1500;
    for (std::size_t i = 0; i < ratings_.size(); ++i) {
        const auto& p = ratings_[i];
        const double x = static_cast<double>(When(p).toMSecsSinceEpoch());
        line->append(x, p.Rating);
        if (p.Won) wins->append(x, p.Rating);
        if (p.Lost) losses->append(x, p.Rating);
        lo = i == 0 ? p.Rating : std::min(lo, p.Rating);
        hi = i == 0 ? p.Rating : std::max(hi, p.Rating);
    }
    rc->addSeries(line);
    rc->addSeries(wins);
    rc->addSeries(losses);
    auto* ax = new QDateTimeAxis();
    ax->setFormat(QStringLiteral("MM/dd"));
    ax->setLabelsFont(font);
    ax->setTickCount(6);
    if (ratings_.size() >= 2) {
        ax->setRange(When(ratings_.front()), When(ratings_.back()));
    } else {
        const QDateTime t = ratings_.empty() ? QDateTime(QDate(2000, 1, 1), QTime(0, 0), Qt::UTC)
                                             : When(ratings_.front());
        ax->setRange(t.addDays(-1), t.addDays(1));
    }
    auto* ay = new QValueAxis();
    ay->setLabelFormat(QStringLiteral("%d"));
    ay->setLabelsFont(font);
    // Whole fifties around the figures keep the scale readable.
    const int bottom = (lo - 25) / 50 * 50, top = (hi + 75) / 50 * 50;
    ay->setRange(bottom, top);
    ay->setTickCount((top - bottom) / 50 + 1);
    rc->addAxis(ax, Qt::AlignBottom);
    rc->addAxis(ay, Qt::AlignLeft);
    for (QAbstractSeries* s : rc->series()) {
        s->attachAxis(ax);
        s->attachAxis(ay);
    }
    auto* rv = new QChartView(rc, this);
    rv->setRenderHint(QPainter::Antialiasing, false);
    ratingView_ = rv;

    auto* nc = new QChart();
    nc->setTitle(NilTitle(japanese_));
    nc->setTitleFont(titleFont);
    nc->legend()->hide();
    nc->setAnimationOptions(QChart::NoAnimation);
    auto* set = new QBarSet(QStringLiteral("%"));
    set->setColor(QColor(0, 128, 192));
    set->setLabelColor(Qt::black);
    QStringList cats;
    for (const auto& r : rates_) {
        *set << r.Percent();
        // The category number and the count behind the rate; the titles are
        // the report's, too long for a bar.
        const QString title = Q(r.Title);
        cats << QStringLiteral("%1 %2/%3").arg(title.left(title.indexOf(')') + 1)).arg(r.Success).arg(r.Success + r.Failure);
    }
    auto* bars = new QBarSeries();
    bars->append(set);
    bars->setLabelsVisible(true);
    bars->setLabelsFormat(QStringLiteral("@value"));
    bars->setLabelsPrecision(3);
    nc->addSeries(bars);
    auto* bx = new QBarCategoryAxis();
    bx->append(cats);
    bx->setLabelsFont(ToQFont("Arial Narrow", 8, false));
    auto* by = new QValueAxis();
    by->setRange(0, 100);
    by->setLabelFormat(QStringLiteral("%d"));
    by->setLabelsFont(font);
    nc->addAxis(bx, Qt::AlignBottom);
    nc->addAxis(by, Qt::AlignLeft);
    bars->attachAxis(bx);
    bars->attachAxis(by);
    auto* nv = new QChartView(nc, this);
    nv->setRenderHint(QPainter::Antialiasing, false);
    nilView_ = nv;

    layout()->addWidget(ratingView_);
    layout()->addWidget(nilView_);
}

void HistoryWindow::paintEvent(QPaintEvent* e) { QWidget::paintEvent(e); }

#else  // Without Qt Charts: the same two panels drawn by hand.

void HistoryWindow::rebuild() { update(); }

void HistoryWindow::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setFont(ToQFont("Arial", 10, true));
    const QRect top(50, 30, kWidth - 70, kHeight / 2 - 70);
    const QRect bottom(50, kHeight / 2 + 30, kWidth - 70, kHeight / 2 - 80);
    p.drawText(10, 18, RatingTitle(japanese_));
    p.drawText(10, kHeight / 2 + 18, NilTitle(japanese_));
    p.setPen(Qt::gray);
    p.drawRect(top);
    p.drawRect(bottom);
    p.setFont(ToQFont("Arial", 8, false));
    if (!ratings_.empty()) {
        int lo = ratings_.front().Rating, hi = lo;
        for (const auto& r : ratings_) lo = std::min(lo, r.Rating), hi = std::max(hi, r.Rating);
        lo = (lo - 25) / 50 * 50;
        hi = (hi + 75) / 50 * 50;
        p.setPen(Qt::black);
        p.drawText(4, top.bottom(), QString::number(lo));
        p.drawText(4, top.top() + 10, QString::number(hi));
        QPolygonF pts;
        const double n = std::max<std::size_t>(1, ratings_.size() - 1);
        for (std::size_t i = 0; i < ratings_.size(); ++i)
            pts << QPointF(top.left() + top.width() * (static_cast<double>(i) / n),
                           top.bottom() - top.height() * double(ratings_[i].Rating - lo) / (hi - lo));
        p.setPen(QPen(QColor(0, 0, 200), 2));
        p.drawPolyline(pts);
    }
    if (!rates_.empty()) {
        const int slot = bottom.width() / static_cast<int>(rates_.size());
        for (std::size_t i = 0; i < rates_.size(); ++i) {
            const int h = static_cast<int>(bottom.height() * rates_[i].Percent() / 100.0);
            const QRect bar(bottom.left() + static_cast<int>(i) * slot + 6, bottom.bottom() - h, slot - 12, h);
            p.fillRect(bar, QColor(0, 128, 192));
            p.setPen(Qt::black);
            p.drawText(bar.left(), bar.top() - 2, QString::number(rates_[i].Percent(), 'f', 1));
            p.drawText(QRect(bar.left() - 4, bottom.bottom() + 2, slot, 30), Qt::AlignHCenter | Qt::TextWordWrap,
                       Q(rates_[i].Title));
        }
    }
}

#endif

}  // namespace ui
