#include "RecordJson.h"

#include <charconv>
#include <string>
#include <vector>

#include <HBXMessage/HBXRecordVisitor.h>

namespace HBX::tool {

namespace {

using Json = nlohmann::ordered_json;

template <class Number>
Json numberFrom(std::string_view text) {
    Number number{};
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

Json valueFrom(HBXKind kind, std::string_view text) {
    switch (kind) {
    case HBXKind::Int:
    case HBXKind::Int64:
    case HBXKind::UInt32:
    case HBXKind::Time:
        return numberFrom<std::int64_t>(text);
    case HBXKind::Double:
        return numberFrom<double>(text);
    case HBXKind::Bool:
        return text == "1";
    default:
        return std::string(text);
    }
}

class Builder final : public HBXRecordVisitor {
public:
    Json take() { return std::move(top_); }

    void beginRecord(const HBXRow* row, const HBXRecordTable& table) override {
        open_.push_back(&place(row));
        *open_.back() = Json::object();
        if (const std::string type = qualifiedTypeName(table); !type.empty()) {
            (*open_.back())["type"] = type;
        }
    }
    void endRecord() override { open_.pop_back(); }

    void beginList(const HBXRow& row, std::size_t) override {
        open_.push_back(&place(&row));
        *open_.back() = Json::array();
    }
    void endList() override { open_.pop_back(); }

    void value(const HBXRow* row, HBXKind kind, std::string_view text) override {
        place(row) = valueFrom(kind, text);
    }
    void absent(const HBXRow*) override {}

private:
    /// Where the next value belongs: under its label, or at the end of the open list.
    Json& place(const HBXRow* row) {
        if (open_.empty()) {
            return top_;
        }
        return row != nullptr ? (*open_.back())[std::string(memberLabel(*row))]
                              : open_.back()->emplace_back();
    }

    Json top_;
    std::vector<Json*> open_; ///< none of them grows while one within it is open
};

} // namespace

Json recordJson(const void* record, const HBXRecordTable& table) {
    Builder builder;
    visitRecord(record, table, builder);
    return builder.take();
}

} // namespace HBX::tool
