// The timer loop's scheduled jobs: armed or not, the millisecond tick at
// which each falls due, and the time left when the loop was paused. Tick
// counts wrap at 2^32, so every comparison is made on the signed difference.
#pragma once

#include <array>
#include <cstdint>

#include "tracking/results.h"

namespace tracking {

class JobSlots {
public:
    void Arm(Job j, std::uint32_t due) {
        armed_[Index(j)] = true;
        due_[Index(j)] = due;
    }
    void Disarm(Job j) { armed_[Index(j)] = false; }
    void DisarmAll() { armed_ = {}; }
    // A new deadline without changing whether the job is armed.
    void SetDue(Job j, std::uint32_t due) { due_[Index(j)] = due; }

    [[nodiscard]] bool Armed(Job j) const { return armed_[Index(j)]; }
    [[nodiscard]] std::uint32_t DueAt(Job j) const { return due_[Index(j)]; }
    [[nodiscard]] std::int32_t Left(Job j) const { return left_[Index(j)]; }
    // Due when `now` is strictly past the deadline.
    [[nodiscard]] bool Due(Job j, std::uint32_t now) const { return Later(now, due_[Index(j)]); }
    [[nodiscard]] bool ArmedAndDue(Job j, std::uint32_t now) const { return Armed(j) && Due(j, now); }

    // The pause freezes the deadlines of the sub-window jobs (1-3): what is
    // left is kept, and on resume they fall due that much after `now`.
    void Freeze(std::uint32_t pausedAt);
    void Thaw(std::uint32_t now);

    // a is strictly later than b, across the wrap of the tick counter.
    static bool Later(std::uint32_t a, std::uint32_t b) { return static_cast<std::int32_t>(a - b) > 0; }

private:
    static std::size_t Index(Job j) { return static_cast<std::size_t>(j); }
    std::array<bool, kJobCount> armed_{};
    std::array<std::uint32_t, kJobCount> due_{};
    std::array<std::int32_t, kJobCount> left_{};
};

// Busy flags of the long jobs: a tick that finds any set returns at once,
// because a job that waits lets nested ticks run over the one pixel buffer.
enum class Busy : int { WindowPass, BidStep, TrickStep, FileView, HandCapture, Count };

class BusyFlags {
public:
    [[nodiscard]] bool Any() const {
        for (bool b : flags_)
            if (b) return true;
        return false;
    }
    [[nodiscard]] bool Is(Busy b) const { return flags_[static_cast<std::size_t>(b)]; }

    // Sets a flag for the lifetime of the guard. A guard for a flag that was
    // already set holds nothing (`Held()` is false), so re-entry is refused.
    class Guard {
    public:
        Guard(BusyFlags& f, Busy b) : flags_(f), which_(b), held_(!f.Is(b)) {
            if (held_) flags_.flags_[static_cast<std::size_t>(which_)] = true;
        }
        ~Guard() {
            if (held_) flags_.flags_[static_cast<std::size_t>(which_)] = false;
        }
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;
        [[nodiscard]] bool Held() const { return held_; }

    private:
        BusyFlags& flags_;
        Busy which_;
        bool held_;
    };

private:
    std::array<bool, static_cast<std::size_t>(Busy::Count)> flags_{};
};

}  // namespace tracking
