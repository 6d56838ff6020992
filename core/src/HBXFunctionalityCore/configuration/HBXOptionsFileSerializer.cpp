#include <HBXFunctionalityCore/configuration/HBXOptionsFileSerializer.h>

#include <iterator>
#include <map>
#include <memory>
#include <utility>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXMessage/HBXMessage.h>

namespace HBX {

namespace {

using Option = boost::program_options::basic_option<char>;
using Options = HBXProgramOptions::serializer::Options;

constexpr int kOption = 1390;
constexpr int kKey = 1026;
constexpr int kValue = 1018;

using ValueReader =
    HBXReaderSimple<std::string, static_cast<int (HBXMessageIterator::*)(std::string&, int) const>(
                                     &HBXMessageIterator::getValue)>;
using ValueWriter =
    HBXWriterSimple<const std::string&, static_cast<int (HBXMessageIterator::*)(const std::string&, int)>(
                                            &HBXMessageIterator::putValue)>;

struct OptionWriter : HBXPlainMarks {
    int operator()(HBXMessageIterator& it, const Option& option) const {
        if (option.value.empty() ||
            (!option.string_key.empty() && it.putValue(option.string_key, kKey) != 0)) {
            return -1;
        }
        return HBXWriterListT(HBXWriterIDT<int, ValueWriter>(ValueWriter(), kValue))(it, option.value);
    }
};

/// A list that is being read, and where in it each key stands.
struct OptionList {
    Options options;
    std::map<std::string, std::size_t> places;
};

/// The option to which the values of a key belong; every one without a key is new.
Option& placeOf(const std::string& key, OptionList& list) {
    if (!key.empty()) {
        const auto [place, isNew] = list.places.emplace(key, list.options.size());
        if (!isNew) {
            return list.options[place->second];
        }
    }
    Option& option = list.options.emplace_back();
    option.string_key = key;
    return option;
}

struct OptionReader {
    int operator()(const HBXMessageIterator& it, OptionList& list) const {
        std::string key;
        std::vector<std::string> values;
        it.getValue(key, kKey);
        if (HBXReaderListT(HBXReaderListDataT<ValueReader>(), kValue, 0)(it, values) != 0 ||
            (key.empty() && values.size() != 1)) {
            return -1;
        }
        std::vector<std::string>& target = placeOf(key, list).value;
        target.insert(target.end(), std::make_move_iterator(values.begin()),
                      std::make_move_iterator(values.end()));
        return 0;
    }
};

/// Sets the error message where the tree, and not the file, is to blame.
int fail(const std::string& file, const char* reason) {
    setErrorMessage(file + ": " + reason);
    return -1;
}

} // namespace

int HBXOptionsFileSerializer::write(Options& options) {
    const boost::intrusive_ptr<HBXMessage> message = adoptMessage(HBXMsgFactory::createNew());
    if (message == nullptr || message->create("") != 0) {
        return -1;
    }
    const std::unique_ptr<HBXMessageIterator> it(message->newIterator());
    const HBXWriterListT writer(HBXWriterIDT<int, OptionWriter>(OptionWriter(), kOption));
    if (it == nullptr || writer(*it, options) != 0) {
        return fail(file_, "an option without a value cannot be kept");
    }
    return message->toTextFile(file_);
}

int HBXOptionsFileSerializer::read(Options& options) {
    const boost::intrusive_ptr<HBXMessage> message = adoptMessage(HBXMsgFactory::createNew());
    if (message == nullptr || message->fromTextFile(file_) != 0) {
        return -1;
    }
    const std::unique_ptr<const HBXMessageIterator> it(std::as_const(*message).newIterator());
    OptionList list;
    if (it == nullptr || HBXReaderListT(OptionReader(), kOption, 0)(*it, list) != 0) {
        return fail(file_, "/option: one value is expected, or a name before the values");
    }
    options = std::move(list.options);
    return 0;
}

} // namespace HBX
