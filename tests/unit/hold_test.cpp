// Signals during a change: each run is a process of its own, whose end is looked at.
#include "Public/hold.h"
#include "Public/newFile.h"
#include "tests/support/scratch.h"

#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

// Runs the body in a process of its own, that ends by the signal, or with status 0, and says no more than that on
// standard error. The signals are not those that the caller of the tests may ignore.
template <class Body>
void expectEnd(int number, const std::string& expected, Body body) {
    int ends[2];
    ASSERT_EQ(0, pipe(ends));
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDERR_FILENO);
        close(ends[0]);
        close(ends[1]);
        for (int each : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE})
            signal(each, SIG_DFL);
        body();
        endBySignal();
        _exit(heldSignal());
    }
    close(ends[1]);
    std::string said;
    for (char byte; read(ends[0], &byte, 1) == 1;)
        said += byte;
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(number, WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status));
    EXPECT_EQ(expected, said);
}

void say(const char* text) {
    EXPECT_GT(write(STDERR_FILENO, text, strlen(text)), 0);
}

void writeToNobody() {
    int ends[2];
    ASSERT_EQ(0, pipe(ends));
    close(ends[0]);
    EXPECT_EQ(-1, write(ends[1], "x", 1));
    EXPECT_EQ(EPIPE, errno);
}

} // namespace

TEST(Hold, LetsTheChangeEndBeforeTheRun) {
    for (int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
        expectEnd(number, "changed closed", [&] {
            {
                const Hold outer("outer");
                const Hold inner("inner");
                number == SIGPIPE ? writeToNobody() : static_cast<void>(kill(getpid(), number));
                say("changed ");
            }
            // What is printed later finds nobody either, and the library is still to be closed.
            if (number == SIGPIPE) writeToNobody();
            say("closed");
        });
    }
}

// And the first one counts.
TEST(Hold, SaysFromTheSecondSignalOnWhatWouldBeLost) {
    const std::string line = std::string(program_invocation_short_name) + ": still changing the adapter; ended now, ";
    expectEnd(SIGTERM, line + "a quarter stays\n" + line + "half of it stays\n", [] {
        const Hold outer("half of it stays");
        {
            const Hold inner("a quarter stays");
            kill(getpid(), SIGTERM);
            usleep(100000);
            kill(getpid(), SIGINT);
            usleep(100000);
        }
        kill(getpid(), SIGINT);
        usleep(100000);
    });
}

TEST(Hold, DoesNotInterruptTheCallUnderWay) {
    expectEnd(SIGINT, "whole", [] {
        const Hold hold("");
        std::thread other([] {
            usleep(50000);
            kill(getpid(), SIGINT);
        });
        const timespec nap = {0, 200000000};
        say(nanosleep(&nap, nullptr) == 0 ? "whole" : "interrupted");
        other.join();
    });
}

TEST(Hold, NotesWhatAThreadOfTheLibraryTakes) {
    expectEnd(SIGTERM, "changed", [] {
        std::thread library([] { usleep(200000); });
        const Hold hold("");
        pthread_kill(library.native_handle(), SIGTERM);
        library.join();
        say("changed");
    });
}

TEST(Hold, KeepsIgnoredWhatTheCallerIgnores) {
    expectEnd(0, "changed", [] {
        signal(SIGHUP, SIG_IGN);
        signal(SIGPIPE, SIG_IGN);
        {
            const Hold hold("");
            kill(getpid(), SIGHUP);
            writeToNobody();
        }
        kill(getpid(), SIGHUP);
        say("changed");
    });
}

TEST(Hold, MakesAFileThatIsTooBigAFailedWrite) {
    expectEnd(SIGXFSZ, "changed", [] {
        const int file = fileno(tmpfile());
        const FileLimit limit(0);
        {
            const Hold hold("");
            EXPECT_EQ(-1, write(file, "x", 1));
            say("changed");
        }
        EXPECT_EQ(-1, write(file, "x", 1));
    });
}

// Unless it comes later or is ignored.
TEST(Hold, IsNotNeededForNewFilesWhichASignalTakesAway) {
    const ScratchFolder folder;
    const std::string path = folder.path + "/image";
    for (int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, 0}) {
        expectEnd(number != 0 ? number : SIGTERM, "", [&] {
            if (number == 0) signal(SIGHUP, SIG_IGN);
            NewFile file = {};
            createNewFile(path.c_str(), file);
            raise(number != 0 ? number : SIGHUP);
            keepNewFile(file);
            raise(SIGTERM);
        });
        EXPECT_EQ(number == 0, access(path.c_str(), F_OK) == 0) << number;
    }
}
