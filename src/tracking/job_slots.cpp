#include "tracking/job_slots.h"

namespace tracking {

void JobSlots::Freeze(std::uint32_t pausedAt) {
    for (int k = 1; k <= 3; ++k) {
        const auto i = static_cast<std::size_t>(k);
        left_[i] = Later(due_[i], pausedAt) ? static_cast<std::int32_t>(due_[i] - pausedAt) : 0;
    }
}

void JobSlots::Thaw(std::uint32_t now) {
    for (int k = 1; k <= 3; ++k) {
        const auto i = static_cast<std::size_t>(k);
        due_[i] = now + static_cast<std::uint32_t>(left_[i]);
    }
}

}  // namespace tracking
