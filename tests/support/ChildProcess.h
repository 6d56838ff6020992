#pragma once

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <new>

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace HBX::test {

/// A forked process that runs `work` and ends with its result. Killed when the object goes before it ended.
class ChildProcess {
public:
    template <class Work>
    explicit ChildProcess(Work work) : pid_(fork()) {
        if (pid_ == 0) {
            _exit(work());
        }
    }
    ~ChildProcess() {
        if (pid_ > 0) {
            signal(SIGKILL);
            wait();
        }
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t pid() const { return pid_; }
    void signal(int number) const { ::kill(pid_, number); }
    /// @return the signal that stopped it, 0 when it has ended.
    int waitUntilStopped() const {
        const int status = waitFor(WUNTRACED);
        return WIFSTOPPED(status) ? WSTOPSIG(status) : 0;
    }
    /// @return what `work` gave, or 1000 and the signal that ended it.
    int wait() {
        int status = waitFor(0);
        while (WIFSTOPPED(status)) { // also said of one that is traced
            status = waitFor(0);
        }
        pid_ = 0;
        return WIFSIGNALED(status) ? 1000 + WTERMSIG(status) : WEXITSTATUS(status);
    }

private:
    int waitFor(int options) const {
        int status = 0;
        while (waitpid(pid_, &status, options) < 0 && errno == EINTR) {
        }
        return status;
    }

    pid_t pid_;
};

/// @return as ChildProcess::wait.
template <class Work>
int inChild(Work work) {
    return ChildProcess(work).wait();
}

/// In this process no file grows beyond the limit: it stands for a full disk.
inline void limitFileSize(std::uint64_t size) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{size, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &limit);
}

/// An object that forked processes and this one see alike; survives any kill.
template <class T>
class Shared {
public:
    Shared()
        : memory_(mmap(nullptr, sizeof(T), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)),
          object_(new(memory_) T()) {}
    ~Shared() { munmap(memory_, sizeof(T)); }
    Shared(const Shared&) = delete;
    Shared& operator=(const Shared&) = delete;
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }

private:
    void* memory_;
    T* object_;
};

} // namespace HBX::test
