#include <HBXCore/internal/FaultGuard.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>

#include <sys/mman.h>
#include <unistd.h>

namespace HBX::internal {

/// The handler may interrupt anything: it only reads what is written by single stores.
struct FaultHandler {
    static constexpr std::size_t kRanges = 256; // further ranges go unguarded

    static void handle(int signal, siginfo_t* info, void* context) {
        const int error = errno;
        const bool ours = info != nullptr && patch(static_cast<char*>(info->si_addr));
        errno = error;
        if (!ours) {
            passOn(signal, info, context);
        }
    }

    static bool patch(char* address) {
        for (std::atomic<GuardedRange*>& entry : ranges) {
            GuardedRange* range = entry.load(std::memory_order_acquire);
            if (range != nullptr && address >= range->begin_ && address < range->begin_ + range->size_) {
                range->damaged_.store(true, std::memory_order_relaxed);
                const auto page = static_cast<std::size_t>(pageSize);
                char* begin = range->begin_ + static_cast<std::size_t>(address - range->begin_) / page * page;
                return mmap(begin, page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1,
                            0) != MAP_FAILED;
            }
        }
        return false;
    }

    static void passOn(int signal, siginfo_t* info, void* context) {
        if ((previous.sa_flags & SA_SIGINFO) != 0 && previous.sa_sigaction != nullptr) {
            previous.sa_sigaction(signal, info, context);
        } else if (previous.sa_handler != SIG_DFL && previous.sa_handler != SIG_IGN) {
            previous.sa_handler(signal);
        } else {
            std::signal(signal, SIG_DFL); // the access is repeated and ends the process as it would have
        }
    }

    static std::array<std::atomic<GuardedRange*>, kRanges> ranges;
    static struct sigaction previous;
    static long pageSize;
};

constinit std::array<std::atomic<GuardedRange*>, FaultHandler::kRanges> FaultHandler::ranges{};
struct sigaction FaultHandler::previous {};
long FaultHandler::pageSize = 0;

GuardedRange::GuardedRange(void* begin, std::size_t size, std::atomic<bool>& damaged)
    : begin_(static_cast<char*>(begin)), size_(size), damaged_(damaged) {
    for (std::atomic<GuardedRange*>& entry : FaultHandler::ranges) {
        GuardedRange* none = nullptr;
        if (entry.compare_exchange_strong(none, this)) {
            return;
        }
    }
}

GuardedRange::~GuardedRange() {
    for (std::atomic<GuardedRange*>& entry : FaultHandler::ranges) {
        GuardedRange* self = this;
        if (entry.compare_exchange_strong(self, nullptr)) {
            return;
        }
    }
}

int installFaultGuard() {
    static const int result = [] {
        FaultHandler::pageSize = sysconf(_SC_PAGESIZE);
        struct sigaction action {};
        action.sa_sigaction = FaultHandler::handle;
        action.sa_flags = SA_SIGINFO | SA_ONSTACK;
        sigemptyset(&action.sa_mask);
        return sigaction(SIGBUS, &action, &FaultHandler::previous);
    }();
    return result;
}

} // namespace HBX::internal
