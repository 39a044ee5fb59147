#ifndef SERVERPROCESS_H
#define SERVERPROCESS_H

// Runs a server that a test needs for its whole run (an X server, a message
// bus) as a child process. The child is told to die with the test process,
// so that a crashed or killed test leaves no server behind; the destructor
// stops it in the ordinary case. Servers announce that they are ready by
// writing a line (a display number, a bus address) to a descriptor that
// they are given on their command line.

#include <QByteArray>
#include <QElapsedTimer>
#include <QList>
#include <QStandardPaths>
#include <QString>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

class ServerProcess
{
public:
    ServerProcess() = default;
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;
    ~ServerProcess() { stop(); }

    // Starts program with arguments, where "{ready-fd}" in an argument stands
    // for the number of the descriptor the server writes its ready line to, and waits up
    // to timeoutMs for that line. On failure failure() says why and no
    // process is left running.
    bool start(const QString& program, const QList<QByteArray>& arguments, int timeoutMs)
    {
        const QString path = QStandardPaths::findExecutable(program);
        if (path.isEmpty())
            return fail(program + QStringLiteral(" is not installed"));
        int ready[2];
        if (pipe2(ready, O_CLOEXEC) != 0)
            return fail(QStringLiteral("no pipe for ") + program);

        std::vector<QByteArray> argumentStore{path.toLocal8Bit()};
        for (const QByteArray& argument : arguments)
            argumentStore.push_back(
                QByteArray(argument).replace("{ready-fd}", QByteArray::number(ready[1])));
        std::vector<char*> argv;
        for (QByteArray& argument : argumentStore)
            argv.push_back(argument.data());
        argv.push_back(nullptr);

        const pid_t parent = getpid();
        _pid = fork();
        if (_pid == 0)
            runChild(argv.data(), ready[1], parent);
        close(ready[1]);
        if (_pid < 0) {
            close(ready[0]);
            return fail(QStringLiteral("cannot fork for ") + program);
        }
        const bool gotLine = readReadyLine(ready[0], timeoutMs);
        close(ready[0]);
        if (!gotLine) {
            stop();
            return fail(program + QStringLiteral(" did not get ready within %1 ms").arg(timeoutMs));
        }
        return true;
    }

    QByteArray readyLine() const { return _readyLine; }
    QString failure() const { return _failure; }

    void stop()
    {
        if (_pid <= 0)
            return;
        kill(_pid, SIGTERM);
        if (!waitUpTo(2000)) {
            kill(_pid, SIGKILL);
            waitpid(_pid, nullptr, 0);
        }
        _pid = -1;
    }

private:
    // Only calls that are safe between fork and exec in a threaded process.
    [[noreturn]] static void runChild(char* const* argv, int readyFd, pid_t parent)
    {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (getppid() != parent)
            _exit(127);
        fcntl(readyFd, F_SETFD, 0);
        const int devNull = open("/dev/null", O_RDWR);
        dup2(devNull, STDIN_FILENO);
        dup2(devNull, STDOUT_FILENO);
        dup2(devNull, STDERR_FILENO);
        execv(argv[0], argv);
        _exit(127);
    }

    bool readReadyLine(int fd, int timeoutMs)
    {
        QElapsedTimer clock;
        clock.start();
        while (!_readyLine.endsWith('\n')) {
            const qint64 left = timeoutMs - clock.elapsed();
            if (left <= 0)
                return false;
            pollfd watched{fd, POLLIN, 0};
            const int polled = poll(&watched, 1, int(left));
            if (polled < 0 && errno == EINTR)
                continue;
            if (polled <= 0)
                return false;
            char buffer[256];
            const ssize_t got = read(fd, buffer, sizeof buffer);
            if (got <= 0)
                return false;
            _readyLine.append(buffer, int(got));
        }
        _readyLine = _readyLine.trimmed();
        return !_readyLine.isEmpty();
    }

    bool waitUpTo(int timeoutMs)
    {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < timeoutMs) {
            if (waitpid(_pid, nullptr, WNOHANG) == _pid)
                return true;
            usleep(10000);
        }
        return false;
    }

    bool fail(const QString& why)
    {
        _failure = why;
        return false;
    }

    pid_t _pid = -1;
    QByteArray _readyLine;
    QString _failure;
};

#endif // SERVERPROCESS_H
