// Signals during a change: each run is a process of its own, whose end is looked at.
#include "Public/hold.h"
#include "tests/support/scratch.h"

#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

struct End {
    int status;       // as wait tells it
    std::string said; // on standard error
};

// Runs body in a process whose standard error is read.
template <class Body>
End endOf(Body body) {
    int said[2];
    if (pipe(said) != 0) return {};
    const pid_t child = fork();
    if (child == 0) {
        dup2(said[1], STDERR_FILENO);
        close(said[0]);
        close(said[1]);
        body();
        endBySignal();
        _exit(heldSignal());
    }
    close(said[1]);
    End end = {};
    char byte;
    while (read(said[0], &byte, 1) == 1) {
        end.said += byte;
    }
    close(said[0]);
    waitpid(child, &end.status, 0);
    return end;
}

bool endedBy(const End& end, int number) {
    return WIFSIGNALED(end.status) && WTERMSIG(end.status) == number;
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
        const End end = endOf([&] {
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
        EXPECT_TRUE(endedBy(end, number)) << number << " " << end.status;
        EXPECT_EQ("changed closed", end.said);
    }
}

TEST(Hold, SaysFromTheSecondSignalOnWhatWouldBeLost) {
    const End end = endOf([] {
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
    EXPECT_TRUE(endedBy(end, SIGTERM)) << "the first one counts";
    const std::string line = std::string(program_invocation_short_name) + ": still changing the adapter; ended now, ";
    EXPECT_EQ(line + "a quarter stays\n" + line + "half of it stays\n", end.said);
}

TEST(Hold, DoesNotInterruptTheCallUnderWay) {
    const End end = endOf([] {
        const Hold hold("");
        std::thread other([] {
            usleep(50000);
            kill(getpid(), SIGINT);
        });
        const timespec nap = {0, 200000000};
        say(nanosleep(&nap, nullptr) == 0 ? "whole" : "interrupted");
        other.join();
    });
    EXPECT_EQ("whole", end.said);
    EXPECT_TRUE(endedBy(end, SIGINT));
}

TEST(Hold, NotesWhatAThreadOfTheLibraryTakes) {
    const End end = endOf([] {
        std::thread library([] { usleep(200000); });
        {
            const Hold hold("");
            pthread_kill(library.native_handle(), SIGTERM);
            library.join();
            say("changed");
        }
    });
    EXPECT_EQ("changed", end.said);
    EXPECT_TRUE(endedBy(end, SIGTERM));
}

TEST(Hold, KeepsIgnoredWhatTheCallerIgnores) {
    const End end = endOf([] {
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
    EXPECT_EQ("changed", end.said);
    EXPECT_EQ(0, end.status);
}

TEST(Hold, EndsAtOnceBeforeAndAfter) {
    for (bool before : {true, false}) {
        const End end = endOf([&] {
            if (before) kill(getpid(), SIGINT);
            { const Hold hold(""); }
            kill(getpid(), SIGINT);
            say("still there");
        });
        EXPECT_TRUE(endedBy(end, SIGINT));
        EXPECT_EQ("", end.said);
    }
}

TEST(Hold, MakesAFileThatIsTooBigAFailedWrite) {
    const End end = endOf([] {
        const int file = fileno(tmpfile());
        const FileLimit limit(0);
        {
            const Hold hold("");
            EXPECT_EQ(-1, write(file, "x", 1));
            say("changed");
        }
        EXPECT_EQ(-1, write(file, "x", 1));
    });
    EXPECT_EQ("changed", end.said);
    EXPECT_TRUE(endedBy(end, SIGXFSZ));
}
