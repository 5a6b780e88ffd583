// What the History window draws, read from the player's files: the rating
// after each recorded game (from the rating history, newest line first) and
// the success rates of the Nil report.
#pragma once

#include <string>
#include <vector>

#include "scoring/nil_history.h"

namespace ui {

struct RatingPoint {
    int Year = 0, Month = 0, Day = 0, Hour = 0, Minute = 0, Second = 0;
    int Rating = 0;
    bool Won = false, Lost = false;
};

// The games of a rating history, oldest first. Lines without a numeric
// rating (provisional ones) or without a date are left out.
std::vector<RatingPoint> ParseRatingHistory(const std::vector<std::string>& lines);

struct NilRate {
    std::string Title;  // the report's category title, trimmed
    int Success = 0, Failure = 0;
    double Percent() const { return Success + Failure > 0 ? 100.0 * Success / (Success + Failure) : 0.0; }
};

// The categories of the Nil report in report order, with their counts.
std::vector<NilRate> NilRates(const scoring::NilCounts& counts, bool japanese);

// Reads a player file in the given code page; empty when it is missing.
std::vector<std::string> ReadPlayerFile(const std::string& path, int codePage);

}  // namespace ui
