#include "platform/sim/virtual_clock.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

using namespace platform;

TEST(VirtualClockTest, WaitRunsDueJobsInOrderAndNestedWaitsAdvance) {
    VirtualClock c({2026, 3, 5, 23, 59, 59}, 100);
    std::vector<int> order;
    c.Schedule(150, [&] { order.push_back(2); });
    c.Schedule(120, [&] {
        order.push_back(1);
        c.Wait(10);  // a job that itself waits
    });
    c.Schedule(900, [&] { order.push_back(3); });
    c.Wait(500);
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
    EXPECT_EQ(c.TickCount(), 600u);
    c.Wait(1000);
    EXPECT_EQ(order.back(), 3);
    const LocalTime t = c.Now();
    EXPECT_EQ((std::array<int, 3>{t.Day, t.Hour, t.Weekday}), (std::array<int, 3>{6, 0, 5}));  // 6 March 2026 is a Friday
}

TEST(VirtualClockTest, TickCountWrapsLikeTheSystemCounter) {
    VirtualClock c({}, 0xFFFFFF00u);
    bool ran = false;
    c.Schedule(0x00000010u, [&] { ran = true; });
    c.Wait(0x200);
    EXPECT_TRUE(ran);
    EXPECT_EQ(c.TickCount(), 0x100u);
}
