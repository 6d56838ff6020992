#pragma once

#include <string>

#include <gtest/gtest.h>

#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>

#include "support/ScratchFolder.h"
#include "support/TextMessage.h"

namespace HBX::test {

inline std::string agentFile() { return HBX_SOURCE_DIR "/samples/agent.xml"; }

/// A configuration out of the content of its root.
inline HBXConfiguration configured(const std::string& content) {
    return HBXConfiguration(textMessage(content).get());
}

/// The same of one section, out of its settings.
inline HBXConfiguration withSection(const std::string& section, const std::string& settings) {
    return configured("<data><" + section + "><configuration>" + settings + "</configuration></" + section +
                      "></data>");
}

/// The tree as one text, without what surrounds it in every message.
inline std::string treeOf(const HBXConfiguration& configuration) {
    return contentText(*Cursor(configuration.getMessage()->newIterator()));
}

inline HBXEID eid(int number) { return HBXEID(HBXGUID(1, number)); }
inline std::string idText(int number) { return "<id>" + eid(number).toString() + "</id>"; }

/// An iterator that lets its protected steps be seen.
class OpenIterator : public HBXConfigurationIterator {
public:
    explicit OpenIterator(const HBXConfiguration& configuration, const std::string& path = "/")
        : HBXConfigurationIterator(configuration.getMessage()) {
        seek(path);
    }
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

class ConfigurationFile : public testing::Test, protected ScratchFolder {};

} // namespace HBX::test
