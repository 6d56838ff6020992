#include "ConfigurationTestUtil.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <dlfcn.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/configuration/HBXOptionsFileSerializer.h>

// A layer between the library and the system that can fail: these stand before those of the C library.
namespace {

int callsUntilFault = 0; ///< 0: none is due
int faultError = 0;
std::string faultCall; ///< the call that has failed

bool faultIsDue(const char* call) {
    if (callsUntilFault == 0 || --callsUntilFault != 0) {
        return false;
    }
    faultCall = call;
    errno = faultError;
    return true;
}

template <class Function>
Function* real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

ssize_t write(int descriptor, const void* bytes, size_t size) {
    static auto* const call = real<ssize_t(int, const void*, size_t)>("write");
    return faultIsDue("write") ? -1 : call(descriptor, bytes, size);
}

int fsync(int descriptor) {
    static auto* const call = real<int(int)>("fsync");
    return faultIsDue("fsync") ? -1 : call(descriptor);
}

int fchmod(int descriptor, mode_t mode) noexcept {
    static auto* const call = real<int(int, mode_t)>("fchmod");
    return faultIsDue("fchmod") ? -1 : call(descriptor, mode);
}

int rename(const char* from, const char* to) noexcept {
    static auto* const call = real<int(const char*, const char*)>("rename");
    return faultIsDue("rename") ? -1 : call(from, to);
}

} // extern "C"

namespace HBX::test {
namespace {

class SaveFault : public FolderTest {
protected:
    SaveFault() {
        EXPECT_EQ(changed_.readFromFile(agentFile()), 0);
        EXPECT_EQ(OpenIterator(changed_).putValue(6, "/system/log_level"), 0);
        EXPECT_EQ(changed_.saveToFile(path("new.xml")), 0);
        new_ = contentOf(path("new.xml"));
        std::filesystem::remove(path("new.xml"));
        (void)write("agent.xml", old_);
    }
    ~SaveFault() override { callsUntilFault = 0; }

    int save() const { return changed_.saveToFile(path("agent.xml")); }

    void expectOldAndNothingElse() const {
        EXPECT_EQ(contentOf(path("agent.xml")), old_);
        EXPECT_EQ(files(), 1) << "nothing is left beside it";
    }

    HBXConfiguration changed_;
    std::string old_ = contentOf(agentFile());
    std::string new_;
};

TEST_F(SaveFault, WhicheverCallFailsTheFileIsWhole) {
    std::string failed;
    for (const int error : {ENOSPC, EIO, EDQUOT, EROFS}) {
        for (int due = 1;; ++due) {
            (void)write("agent.xml", old_);
            failed += faultCall.empty() ? "" : faultCall + ' ';
            faultCall.clear();
            faultError = error;
            callsUntilFault = due;
            const int result = save();
            callsUntilFault = 0;
            if (faultCall.empty()) {
                EXPECT_EQ(result, 0);
                break;
            }
            EXPECT_EQ(result, -1) << faultCall;
            EXPECT_NE(getErrorMessage().find(errnoText(error)), std::string::npos) << getErrorMessage();
            EXPECT_NE(getErrorMessage().find(path("agent.xml")), std::string::npos) << getErrorMessage();
            const bool onlyFolderIsUnsafe = getErrorMessage().find("folder") != std::string::npos;
            EXPECT_EQ(contentOf(path("agent.xml")), onlyFolderIsUnsafe ? new_ : old_) << faultCall << due;
            EXPECT_EQ(files(), 1);
        }
        EXPECT_EQ(contentOf(path("agent.xml")), new_);
    }
    const std::string round = "fchmod write fsync rename fsync ";
    EXPECT_EQ(failed, round + round + round + round) << "every call has failed once for each error";
}

TEST_F(SaveFault, FullDiskLeavesTheOldFile) {
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    for (rlim_t room = 0; room < new_.size(); room += new_.size() / 16) { // stands for a full disk
        const rlimit small{room, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
        const int result = save();
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(result, -1) << room;
        expectOldAndNothingElse();
    }
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(save(), 0);
    EXPECT_EQ(contentOf(path("agent.xml")), new_);
}

TEST_F(SaveFault, FolderThatMayNotBeWrittenLeavesTheOldFile) {
    constexpr uid_t kNobody = 65534;
    const bool isRoot = geteuid() == 0; // to whom folders are never closed
    chmod(path("").c_str(), 0555);
    if (isRoot) {
        ASSERT_EQ(seteuid(kNobody), 0);
    }
    const int result = save();
    const std::string reason = getErrorMessage();
    if (isRoot) {
        ASSERT_EQ(seteuid(0), 0);
    }
    chmod(path("").c_str(), 0755);
    EXPECT_EQ(result, -1);
    EXPECT_NE(reason.find(errnoText(EACCES)), std::string::npos) << reason;
    expectOldAndNothingElse();
}

TEST_F(SaveFault, OptionsKeepTheirOldFileToo) {
    HBXOptionsFileSerializer file(path("agent.xml"));
    HBXProgramOptions::serializer::Options options(1);
    options[0].value = {"call"};
    for (int due = 1; due <= 4; ++due) {
        faultError = ENOSPC;
        callsUntilFault = due;
        EXPECT_EQ(file.write(options), -1);
        callsUntilFault = 0;
        expectOldAndNothingElse();
    }
}

} // namespace
} // namespace HBX::test
