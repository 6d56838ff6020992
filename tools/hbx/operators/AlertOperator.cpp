#include "AlertOperator.h"

#include <HBXFunctionalityCore/alert/HBXAlertData.h>
#include <HBXFunctionalityCore/alert/HBXInfo.h>

#include "InfoText.h"

namespace HBX::tool {

namespace {

struct RenderArguments {
    boost::shared_ptr<HBXEventData> data;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<RenderArguments>;
};

constexpr HBXRow kRenderArguments[] = {polymorphic<&RenderArguments::data>(1913)};

struct RenderResult {
    std::string text;
    HBXInfo info;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<RenderResult>;
    using Writer = HBXTableWriter<RenderResult>;
};

constexpr HBXRow kRenderResult[] = {
    member<&RenderResult::text>(3009),
    member<&RenderResult::info>(1134),
};

constinit const HBXRecordTable RenderArguments::table =
    recordTable<RenderArguments>("RenderArguments", 0, 0, kRenderArguments);
constinit const HBXRecordTable RenderResult::table =
    recordTable<RenderResult>("RenderResult", 0, 0, kRenderResult);

Outcome render(const RenderArguments& arguments, RenderResult& result) {
    if (!arguments.data) {
        return RequestFailure{RequestError::BadArguments, "event_data is missing"};
    }
    const auto* alert = dynamic_cast<const HBXAlertData*>(arguments.data.get());
    if (alert == nullptr) {
        return RequestFailure{RequestError::BadArguments, "event_data is of no kind of alert"};
    }
    alert->toInfo(result.info);
    const std::optional<std::string> text = filledText(result.info);
    if (!text) {
        return RequestFailure{RequestError::NoAnswer, "the text would be longer than a megabyte"};
    }
    result.text = *text;
    return {};
}

constexpr OperatorVerb kVerbs[] = {{3504, answer<RenderArguments, RenderResult, render>}};

} // namespace

constinit const Operator kAlertOperator{3503, kVerbs};

} // namespace HBX::tool
