#pragma once

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "support/MessageTestUtil.h"

/// Messages out of what stands below their root.
namespace HBX::test {

inline std::string repeated(int count, const std::function<std::string(int)>& piece) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += piece(i);
    }
    return all;
}

inline std::string messageText(const std::string& content) {
    return R"(<message xmlns:hbx="urn:hbx:message" hbx:v="1">)" + content + "</message>";
}

inline Message textMessage(const std::string& content) {
    Message message = newMessage();
    EXPECT_EQ(message->fromText(messageText(content).c_str(), nullptr), 0) << content;
    return message;
}

} // namespace HBX::test
