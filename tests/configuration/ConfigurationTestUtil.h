#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {

inline std::string agentFile() { return HBX_SOURCE_DIR "/samples/agent.xml"; }

/// A whole message around the content of its root.
inline std::string messageText(const std::string& content) {
    return R"(<message xmlns:hbx="urn:hbx:message" hbx:v="1">)" + content + "</message>";
}

/// A configuration out of the content of its root.
inline HBXConfiguration configured(const std::string& content) {
    const Message message = newMessage();
    EXPECT_EQ(message->fromText(messageText(content).c_str(), nullptr), 0) << content;
    return HBXConfiguration(message.get());
}

/// The tree as one text, without what surrounds it in every message.
inline std::string treeOf(const HBXConfiguration& configuration) {
    const std::string text = takeText(configuration.getMessage()->toText(nullptr, ""));
    const std::size_t begin = text.find('>', text.find("<message")) + 1;
    const std::size_t end = text.rfind("</message>");
    return end == std::string::npos ? "" : text.substr(begin, end - begin);
}

/// An iterator that lets its protected steps be seen.
class OpenIterator : public HBXConfigurationIterator {
public:
    explicit OpenIterator(const HBXConfiguration& configuration)
        : HBXConfigurationIterator(configuration.getMessage()) {}
    using HBXConfigurationIterator::restorePath;
    using HBXConfigurationIterator::savePath;

    /// Names from the top element down to the position, one for each level: "data/system/log_level". (Inside
    /// a wrapper at level 1, where no path leads: "system/configuration".)
    [[nodiscard]] std::string where() const {
        OpenIterator climber = *this;
        climber.savePath();
        climber.restorePath(); // has a cursor of its own now
        std::string names = climber.curName();
        while (climber.seekUp() == 0) {
            names = climber.curName() + '/' + names;
        }
        return names;
    }
};

/// A folder that is gone after the test.
class FolderTest : public testing::Test {
protected:
    FolderTest() {
        std::string pattern = testing::TempDir() + "hbx-configuration-XXXXXX";
        folder_ = mkdtemp(pattern.data());
    }
    ~FolderTest() override { std::filesystem::remove_all(folder_); }

    [[nodiscard]] std::string path(const std::string& name) const { return folder_ / name; }

    [[nodiscard]] std::string write(const std::string& name, const std::string& bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return path(name);
    }

    [[nodiscard]] static std::string contentOf(const std::string& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    [[nodiscard]] std::ptrdiff_t files() const {
        return std::distance(std::filesystem::directory_iterator(folder_), {});
    }

private:
    std::filesystem::path folder_;
};

} // namespace HBX::test
