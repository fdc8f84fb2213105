#include <gtest/gtest.h>

#include <tuple>

#include "log/log_object.h"
#include "platform/clock.h"
#include "tests/host.h"
#include "tests/rooms.h"

namespace {

using NPlatform::CalendarTime;
using NTest::Progress;
using VCSVReader::VLogObject;

TEST(Log, KeepsTheLastMessageWithItsStamp) {
    const std::pair<CalendarTime, const char16_t*> rows[] = {
        {{2026, 11, 16, 17, 52, 32}, u"[2026/11/16 17:52:32] done\n"},
        {{2027, 1, 2, 3, 4, 5}, u"[2027/01/02 03:04:05] done\n"},
        {{999, 12, 31, 0, 0, 0}, u"[0999/12/31 00:00:00] done\n"},
        {{99, 12, 31, 0, 0, 0}, u"Invalid DateTimedone\n"},
        {{2026, 13, 1, 0, 0, 0}, u"Invalid DateTimedone\n"},
        {{2026, 12, 1, 24, 0, 0}, u"Invalid DateTimedone\n"},
        {{2026, 12, 1, 0, 0, 60}, u"Invalid DateTimedone\n"},
        {{}, u"Invalid DateTimedone\n"},  // the system does not know
    };
    static CalendarTime now;
    const auto clock = [](CalendarTime& time) {
        time = now;
        return now.year != 0;
    };
    const NTest::Replacement replacement(NPlatform::LocalTime, +clock);
    VLogObject log(false);
    EXPECT_EQ(log.LastLine(), u"");
    for (const auto& [time, line] : rows) {
        now = time;
        log.LogMessage(u"busy");
        log.LogMessage(u"done");
        EXPECT_EQ(log.LastLine(), line);
    }
}

TEST(Log, ForwardsWhatTheLoggingLibraryAllows) {
    const std::uint32_t ours = Progress::Library().GetOrCreateGroupId("GroupSorbel");
    const std::vector<std::u16string> messages = {u"50 % done\n", u""};
    const std::tuple<bool, std::uint32_t, int, bool> rows[] = {
        {true, ours, 2, true},   {true, ~0U, 3, true},   {true, ours, 1, false},
        {true, ~ours, 2, false}, {false, ~0U, 3, false},
    };
    for (const auto& [forward, mask, level, isForwarded] : rows) {
        const Progress progress(mask, level);
        VLogObject log(forward);
        for (const std::u16string& message : messages) log.LogMessage(message);
        EXPECT_EQ(Progress::Messages(), isForwarded ? messages : std::vector<std::u16string>())
            << forward << ", " << mask << ", " << level;
    }
}

}  // namespace
