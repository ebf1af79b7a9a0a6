#include "cli/terminal/Interrupt.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace vrx::cli {
namespace {

void (*handlerOf(int signal))(int) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    return action.sa_handler;
}

TEST(InterruptTest, TheFirstInterruptAsksAndWhatWasBeforeComesBack) {
    {
        const Interrupt interrupt;
        EXPECT_FALSE(interrupt.isAsked());
        raise(SIGTERM);
        EXPECT_TRUE(interrupt.isAsked());
    }
    EXPECT_EQ(handlerOf(SIGINT), SIG_DFL);
    EXPECT_EQ(handlerOf(SIGTERM), SIG_DFL);
    EXPECT_FALSE(Interrupt().isAsked());
}

TEST(InterruptTest, TheSecondInterruptEndsTheProgram) {
    const pid_t child = fork();
    if (child == 0) {
        const Interrupt interrupt;
        raise(SIGINT);
        raise(SIGINT);
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT);
}

TEST(InterruptTest, ASignalThatIsIgnoredStaysIgnored) {
    signal(SIGINT, SIG_IGN);
    {
        const Interrupt interrupt;
        raise(SIGINT);
        EXPECT_FALSE(interrupt.isAsked());
    }
    EXPECT_EQ(handlerOf(SIGINT), SIG_IGN);
    signal(SIGINT, SIG_DFL);
}

}  // namespace
}  // namespace vrx::cli
