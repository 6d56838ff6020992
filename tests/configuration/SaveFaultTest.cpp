#include "ConfigurationTestUtil.h"

#include <cerrno>
#include <cstdio>
#include <dlfcn.h>
#include <functional>
#include <sys/stat.h>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/configuration/HBXOptionsFileSerializer.h>

// A layer between the library and the system that can fail: these stand before those of the C library.
namespace {

int callsUntilFault = 0; ///< 0: none is due
int faultError = 0;
std::string faultCall; ///< the call that has failed

/// Calls the one of the C library, unless it is due to fail.
template <class Result, class... Arguments>
Result passOn(const char* name, Arguments... arguments) {
    if (callsUntilFault != 0 && --callsUntilFault == 0) {
        faultCall = name;
        errno = faultError;
        return -1;
    }
    return reinterpret_cast<Result (*)(Arguments...)>(dlsym(RTLD_NEXT, name))(arguments...);
}

} // namespace

extern "C" {
ssize_t write(int file, const void* bytes, size_t size) {
    return passOn<ssize_t>("write", file, bytes, size);
}
int fsync(int file) { return passOn<int>("fsync", file); }
int fchmod(int file, mode_t mode) noexcept { return passOn<int>("fchmod", file, mode); }
int rename(const char* from, const char* to) noexcept { return passOn<int>("rename", from, to); }
}

namespace HBX::test {
namespace {

class SaveFault : public ConfigurationFile {
protected:
    SaveFault() {
        EXPECT_EQ(changed_.readFromFile(agentFile()), 0);
        EXPECT_EQ(OpenIterator(changed_).putValue(6, "/system/log_level"), 0);
    }
    void TearDown() override { callsUntilFault = 0; }

    HBXConfiguration changed_;
    std::string old_ = contentOf(agentFile());
};

TEST_F(SaveFault, WhicheverCallFailsTheFileIsWhole) {
    HBXProgramOptions::serializer::Options options(1);
    options[0].value = {"call"};
    const std::string file = path("agent.xml");
    const std::function<int()> saves[] = {
        [&] { return changed_.saveToFile(file); },
        [&] { return HBXOptionsFileSerializer(file).write(options); },
    };
    for (const auto& save : saves) {
        ASSERT_EQ(save(), 0);
        const std::string saved = contentOf(file);
        std::string failed;
        for (int due = 1; due <= 5; ++due) {
            write("agent.xml", old_);
            faultError = due % 2 == 0 ? ENOSPC : EIO;
            callsUntilFault = due;
            EXPECT_EQ(save(), -1) << due;
            EXPECT_EQ(callsUntilFault, 0) << due;
            failed += faultCall + ' ';
            const std::string& reason = getErrorMessage();
            EXPECT_NE(reason.find(errnoText(faultError)), std::string::npos) << reason;
            EXPECT_NE(reason.find(file), std::string::npos) << reason;
            const bool onlyFolderIsUnsafe = reason.find("folder") != std::string::npos;
            EXPECT_EQ(onlyFolderIsUnsafe, due == 5) << reason;
            EXPECT_EQ(contentOf(file), onlyFolderIsUnsafe ? saved : old_) << failed;
            EXPECT_EQ(files(), 1) << "nothing is left beside it";
        }
        EXPECT_EQ(failed, "fchmod write fsync rename fsync ");
        callsUntilFault = 6;
        EXPECT_EQ(save(), 0);
        EXPECT_EQ(std::exchange(callsUntilFault, 0), 1) << "no further call could fail";
    }
    EXPECT_EQ(changed_.saveToFile(path("missing/agent.xml")), -1);
    EXPECT_NE(getErrorMessage().find(errnoText(ENOENT)), std::string::npos) << getErrorMessage();
}

} // namespace
} // namespace HBX::test
