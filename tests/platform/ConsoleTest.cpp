#include "platform/console.h"

#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace {

// A pseudo-terminal in the place of standard input; what is written to `keyboard` is typed.
struct Terminal {
    Terminal() : keyboard(posix_openpt(O_RDWR | O_NOCTTY)), before(dup(STDIN_FILENO))
    {
        EXPECT_EQ(grantpt(keyboard), 0);
        EXPECT_EQ(unlockpt(keyboard), 0);
        screen = open(ptsname(keyboard), O_RDWR | O_NOCTTY);
        EXPECT_EQ(dup2(screen, STDIN_FILENO), STDIN_FILENO);
    }
    ~Terminal()
    {
        dup2(before, STDIN_FILENO);
        for (const int descriptor : {before, screen, keyboard}) close(descriptor);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    termios mode() const
    {
        termios now{};
        EXPECT_EQ(tcgetattr(screen, &now), 0);
        return now;
    }

    int keyboard;
    int before;
    int screen = -1;
};

TEST(Console, readsKeysWithoutEchoAndRestoresTheMode)
{
    struct Row {
        char typed;
        std::int32_t key;
    };
    Terminal terminal;
    termios cooked = terminal.mode();
    cooked.c_cc[VERASE] = 'e';
    tcsetattr(terminal.screen, TCSANOW, &cooked);
    for (const Row& row :
         {Row{'a', 'a'}, Row{'\r', 13}, Row{'\n', 13}, Row{'\x7F', 8}, Row{'\x08', 8}, Row{'e', 8},
          Row{'\x03', 3}, Row{'\x04', 26}, Row{'\x1A', 26}, Row{'\x11', 17}, Row{'\xE9', 0xE9}}) {
        std::thread typist([&] {
            while ((terminal.mode().c_lflag & ICANON) != 0) std::this_thread::yield();
            EXPECT_EQ(::write(terminal.keyboard, &row.typed, 1), 1);
        });
        EXPECT_EQ(orvcore::readKey(), row.key);
        typist.join();
        const termios after = terminal.mode();
        EXPECT_EQ(std::memcmp(&after, &cooked, sizeof after), 0) << row.key;
    }
    fcntl(terminal.keyboard, F_SETFL, O_NONBLOCK);
    char echo;
    EXPECT_EQ(::read(terminal.keyboard, &echo, 1), -1) << "nothing is echoed";
}

} // namespace
