#pragma once

#include <memory>

#include <HBXMessage/HBXMessage.h>

namespace HBX {

namespace internal {
class Tree;
struct Envelope;
} // namespace internal

/// The message object: owns the tree and the envelope.
class HBX_EXPORT HBXBinary final : public HBXMessage {
public:
    HBXBinary();

    HBXMessage* copy(bool deep) override;
    HBXMessageIterator* newIterator() override;
    const HBXMessageIterator* newIterator() const override;
    int create(int type) override;
    int create(const char* name) override;
    int init(const char* data, int length) override;
    int serialize(char** out, int* length, const HBXMessageIterator* from, int flags) const override;
    int serialize(char* buffer, std::size_t* length, const HBXMessageIterator* from) const override;
    int deserialize(const char* data, int length, HBXMessageIterator* into) override;
    int deserialize(const HBXMessageIterator* from, HBXMessageIterator* into) override;
    int fromText(const char* text, HBXMessageIterator* into) override;
    char* toText(const HBXMessageIterator* from, const std::string& indent, int flags = 0) const override;
    int fromTextFile(const std::string& path) override;
    int toTextFile(const std::string& path) const override;

    int getOrigin(std::string& value) const override;
    int setOrigin(const std::string& value) override;
    int getTarget(std::vector<std::string>& value) const override;
    using HBXMessage::setTarget;
    int setTarget(const std::vector<std::string>& value) override;
    int addTarget(const std::string& value) override;
    int getID(std::string& value) const override;
    int setID(const std::string& value, bool overwrite) override;
    int getLog(int& value) const override;
    int setLog(int value) override;
    int getPriority(int& value) const override;
    int setPriority(int value) override;
    int getProgress(int& value) const override;
    int setProgress(int value) override;
    int getSession(std::string& value) const override;
    int setSession(const std::string& value) override;
    using HBXMessage::getSessionID;
    using HBXMessage::setSessionID;
    int getSessionID(std::string& value) const override;
    int setSessionID(const std::string& value) override;
    int getTime(std::int64_t& value) const override;
    int setTime(std::int64_t value) override;
    int getTimeout(int& value) const override;
    int setTimeout(int value) override;
    int getTimeoutLimit(int& value) const override;
    int setTimeoutLimit(int value) override;
    int getType(int& value) const override;
    int setType(int value) override;
    int getUid(std::string& value) const override;
    int setUid(const std::string& value) override;
    int getVersion(int& value) const override;
    int setVersion(int value) override;

    /// What the cursors work on.
    internal::Tree& tree() { return *tree_; }
    [[nodiscard]] const internal::Tree& tree() const { return *tree_; }
    internal::Envelope& envelope() { return *envelope_; }
    [[nodiscard]] const internal::Envelope& envelope() const { return *envelope_; }

private:
    ~HBXBinary() override;

    std::unique_ptr<internal::Tree> tree_;
    std::unique_ptr<internal::Tree> spare_;
    std::unique_ptr<internal::Envelope> envelope_;
};

} // namespace HBX
