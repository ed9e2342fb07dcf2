#include "platform/console.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace {

// Puts another descriptor in the place of standard input.
class InputFrom {
public:
    explicit InputFrom(int descriptor) : m_before(dup(STDIN_FILENO))
    {
        dup2(descriptor, STDIN_FILENO);
    }
    ~InputFrom()
    {
        dup2(m_before, STDIN_FILENO);
        close(m_before);
    }
    InputFrom(const InputFrom&) = delete;
    InputFrom& operator=(const InputFrom&) = delete;

private:
    int m_before;
};

// A pseudo-terminal; what is written to `keyboard` is typed.
struct Terminal {
    Terminal() : keyboard(posix_openpt(O_RDWR | O_NOCTTY))
    {
        EXPECT_EQ(grantpt(keyboard), 0);
        EXPECT_EQ(unlockpt(keyboard), 0);
        screen = open(ptsname(keyboard), O_RDWR | O_NOCTTY);
        EXPECT_GE(screen, 0);
    }
    ~Terminal()
    {
        close(screen);
        close(keyboard);
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
    const InputFrom input(terminal.screen);
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

TEST(Console, takesPlainBytesWhereThereIsNoTerminal)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const InputFrom input(ends[0]);
    ASSERT_EQ(::write(ends[1], "a\n\x7F", 3), 3);
    close(ends[1]);
    std::vector<std::int32_t> keys;
    for (int i = 0; i < 5; ++i) keys.push_back(orvcore::readKey());
    EXPECT_EQ(keys, (std::vector<std::int32_t>{'a', '\n', 127, 26, 26}));
    close(ends[0]);
}

} // namespace
