#include "platform/console.h"

#include <gtest/gtest.h>

#include <cstring>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace {

TEST(Console, readsKeysWithoutEchoAndRestoresTheMode)
{
    using Row = std::pair<char, std::int32_t>;
    // A pseudo-terminal in the place of standard input; what is written to `keyboard` is typed.
    const int keyboard = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_TRUE(grantpt(keyboard) == 0 && unlockpt(keyboard) == 0);
    const int screen = open(ptsname(keyboard), O_RDWR | O_NOCTTY);
    const int before = dup(STDIN_FILENO);
    ASSERT_EQ(dup2(screen, STDIN_FILENO), STDIN_FILENO);
    const auto mode = [screen] {
        termios now{};
        EXPECT_EQ(tcgetattr(screen, &now), 0);
        return now;
    };
    termios cooked = mode();
    cooked.c_cc[VERASE] = 'e';
    tcsetattr(screen, TCSANOW, &cooked);
    for (const auto& row :
         {Row{'a', 'a'}, Row{'\r', 13}, Row{'\n', 13}, Row{'\x7F', 8}, Row{'\x08', 8}, Row{'e', 8},
          Row{'\x03', 3}, Row{'\x04', 26}, Row{'\x1A', 26}, Row{'\x11', 17}, Row{'\xE9', 0xE9}}) {
        std::thread typist([&] {
            while ((mode().c_lflag & ICANON) != 0) std::this_thread::yield();
            EXPECT_EQ(::write(keyboard, &row.first, 1), 1);
        });
        EXPECT_EQ(orvcore::readKey(), row.second);
        typist.join();
        const termios after = mode();
        EXPECT_EQ(std::memcmp(&after, &cooked, sizeof after), 0) << row.second;
    }
    fcntl(keyboard, F_SETFL, O_NONBLOCK);
    char echo;
    EXPECT_EQ(::read(keyboard, &echo, 1), -1) << "nothing is echoed";
    dup2(before, STDIN_FILENO);
    for (const int descriptor : {before, screen, keyboard}) close(descriptor);
}

} // namespace
