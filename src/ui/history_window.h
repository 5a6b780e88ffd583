// The History window: the user's rating game by game as a line, and the
// success rates of the Nil report as bars, both read from the files.
#pragma once

#include <QWidget>
#include <vector>

#include "ui/history_data.h"

namespace ui {

class HistoryWindow : public QWidget {
    Q_OBJECT
public:
    explicit HistoryWindow(QWidget* parent = nullptr);

    // Reads the rating history and the Nil report (either path may be empty
    // or missing) in the code page of the player's files.
    void loadFiles(const std::string& historyPath, const std::string& nilReportPath, int codePage, bool japanese);
    void setData(const std::vector<RatingPoint>& ratings, const std::vector<NilRate>& rates, bool japanese);

    const std::vector<RatingPoint>& ratings() const { return ratings_; }
    const std::vector<NilRate>& rates() const { return rates_; }

    static constexpr int kWidth = 560;
    static constexpr int kHeight = 520;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    void rebuild();
    std::vector<RatingPoint> ratings_;
    std::vector<NilRate> rates_;
    bool japanese_ = false;
    QWidget* ratingView_ = nullptr;
    QWidget* nilView_ = nullptr;
};

}  // namespace ui
