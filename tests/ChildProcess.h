#ifndef CHILDPROCESS_H
#define CHILDPROCESS_H

// Runs a piece of work in a forked child, so that tests can give it a full
// disk (a file-size limit) or kill it in the middle of a write without
// touching the test process itself.

#include <QByteArray>
#include <QFile>

#include <csignal>
#include <functional>
#include <sys/resource.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

struct ChildResult {
    bool exited = false;   // ended through _exit rather than a signal
    int exitCode = -1;     // the work's result when it exited
    int signal = 0;        // the signal that ended it otherwise
};

inline ChildResult waitForChild(pid_t pid)
{
    ChildResult result;
    int status = 0;
    while (waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR)
            return result;
    }
    if (WIFEXITED(status)) {
        result.exited = true;
        result.exitCode = WEXITSTATUS(status);
    } else if (WIFSIGNALED(status)) {
        result.signal = WTERMSIG(status);
    }
    return result;
}

// Runs work in a child whose files may not grow beyond maxFileBytes, the way
// a nearly full disk refuses them: writes past the limit fail with EFBIG
// (SIGXFSZ is ignored so that they fail instead of killing the child). The
// child exits with work()'s result, so work should answer 0 for success.
inline ChildResult runWithFileSizeLimit(qint64 maxFileBytes, const std::function<int()>& work)
{
    const pid_t pid = fork();
    if (pid == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{rlim_t(maxFileBytes), rlim_t(maxFileBytes)};
        setrlimit(RLIMIT_FSIZE, &limit);
        _exit(work());
    }
    if (pid < 0)
        return ChildResult();
    return waitForChild(pid);
}

// Starts work in a child and kills it with SIGKILL as soon as
// writeStarted() says the write is under way (polled every millisecond, for
// at most timeoutMs). Answers how the child ended; a child that finished
// before it could be killed reports exited == true.
inline ChildResult killChildDuringWrite(const std::function<void()>& work,
                                        const std::function<bool()>& writeStarted,
                                        int timeoutMs = 10000)
{
    const pid_t pid = fork();
    if (pid == 0) {
        work();
        _exit(0);
    }
    if (pid < 0)
        return ChildResult();
    for (int waited = 0; waited < timeoutMs && !writeStarted(); ++waited)
        usleep(1000);
    kill(pid, SIGKILL);
    return waitForChild(pid);
}

inline QByteArray fileBytes(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

#endif // CHILDPROCESS_H
