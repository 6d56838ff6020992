#include <HBXFunctionalityCore/alert/HBXAlertData.h>

namespace HBX {

int HBXAlertTypeReader::operator()(const HBXMessageIterator& it, HBXAlertData::AlertType& type) const {
    int number = 0;
    const int result = it.getValue(number, 0);
    if (result == 0) {
        type = static_cast<HBXAlertData::AlertType>(number);
    }
    return result;
}

int HBXAlertTypeWriter::operator()(HBXMessageIterator& it, HBXAlertData::AlertType type) const {
    return it.putValue(static_cast<int>(type), 0);
}

} // namespace HBX
